#pragma once

#include "merge/MergeSettings.h"

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <optional>

namespace quillon {

/// Settings from name and value pairs. What is not set answers no, empty, absent (addedPageUrl) or 0. Set up first,
/// then only read, which any thread may do.
class DriverSettings final : public MergeSettings {
public:
    enum class Kind { Switch, Number, Text, Path, Attributes };

    /// Answers `value` to the getter `name` from now on. On an unknown name or a value that does not fit nothing
    /// changes and the result says what is wrong.
    [[nodiscard]] std::optional<QString> set(const QString& name, const QString& value);

    /// The getters of one kind.
    [[nodiscard]] static QStringList names(Kind kind);

    [[nodiscard]] bool isAddPage() const override;
    [[nodiscard]] bool isAddBlankPage() const override;
    [[nodiscard]] QUrl addedPageUrl() const override;
    [[nodiscard]] bool isAddBookmark() override;
    [[nodiscard]] bool isKeepOriginalBookmark() const override;
    [[nodiscard]] bool isUseFileName() const override;
    [[nodiscard]] bool isRemoveExtension() const override;
    [[nodiscard]] bool isAddWaterMark() const override;
    [[nodiscard]] QString getWaterMarkContent() const override;
    [[nodiscard]] bool isAddPageNumber() const override;
    [[nodiscard]] std::int32_t pageNumberPosition() const override;
    [[nodiscard]] QString getNextPageNumberPrefixString() const override;
    /// From `font=FAMILY,size=POINTS,color=#RRGGBB`, any of which may be missing; not set: empty attributes. The text
    /// system must be there, see Font.
    [[nodiscard]] TextAttributes getStringAttr() const override;
    [[nodiscard]] std::int32_t getPageNumberBegin() const override;
    [[nodiscard]] std::int32_t getPageNumberOffset() const override;
    [[nodiscard]] bool isUserEncrypt() const override;
    [[nodiscard]] QString userEncryptPassword() const override;
    [[nodiscard]] bool isOwnerEncrypt() const override;
    [[nodiscard]] QString ownerEncryptPassword() const override;
    [[nodiscard]] bool isCopyAllowed() const override;
    [[nodiscard]] bool isPrintAllowed() const override;

    // The document information is what was set, whatever the inputs hold.
    void registerTitle(const QString&) override {}
    void registerAuthor(const QString&) override {}
    void registerSubject(const QString&) override {}
    void registerKeywords(const std::optional<QStringList>&) override {}
    void registerCreator(const QString&) override {}
    [[nodiscard]] QString resolveTitle() override;
    [[nodiscard]] QString resolveAuthor() override;
    [[nodiscard]] QString resolveSubject() override;
    [[nodiscard]] QString resolveKeywords() override;
    [[nodiscard]] QString resolveCreator() override;

private:
    [[nodiscard]] bool isOn(const char* name) const;
    [[nodiscard]] std::int32_t number(const char* name) const;
    [[nodiscard]] QString text(const char* name) const;

    QVariantMap values_;
};

}  // namespace quillon
