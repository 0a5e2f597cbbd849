#pragma once

#include "merge/MergeSettings.h"

#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <utility>
#include <vector>

namespace quillon::test {

/// Settings that answer no, empty and 0 until a test says otherwise, and write down what is registered with them.
class PlainSettings : public MergeSettings {
public:
    bool addPage = false;
    bool addBlankPage = false;
    QUrl addedPage;
    bool addBookmark = false;
    bool keepOriginalBookmark = false;
    bool useFileName = false;
    bool removeExtension = false;
    bool addWaterMark = false;
    QString waterMarkContent = QStringLiteral("");
    bool addPageNumber = false;
    std::int32_t position = 0;
    QString prefix = QStringLiteral("");
    TextAttributes attributes;
    std::int32_t begin = 0;
    std::int32_t offset = 0;
    bool userEncrypt = false;
    QString userPassword = QStringLiteral("");
    bool ownerEncrypt = false;
    QString ownerPassword = QStringLiteral("");
    bool copyAllowed = false;
    bool printAllowed = false;
    QString title = QStringLiteral("");
    QString author = QStringLiteral("");
    QString subject = QStringLiteral("");
    QString keywords = QStringLiteral("");
    QString creator = QStringLiteral("");

    /// `title=…` and so on for what was registered, `title` alone for an absent value, `resolveTitle` and so on for
    /// what was asked, all in the order of the calls.
    QStringList calls;

    [[nodiscard]] bool isAddPage() const override { return addPage; }
    [[nodiscard]] bool isAddBlankPage() const override { return addBlankPage; }
    [[nodiscard]] QUrl addedPageUrl() const override { return addedPage; }
    [[nodiscard]] bool isAddBookmark() override { return addBookmark; }
    [[nodiscard]] bool isKeepOriginalBookmark() const override { return keepOriginalBookmark; }
    [[nodiscard]] bool isUseFileName() const override { return useFileName; }
    [[nodiscard]] bool isRemoveExtension() const override { return removeExtension; }
    [[nodiscard]] bool isAddWaterMark() const override { return addWaterMark; }
    [[nodiscard]] QString getWaterMarkContent() const override { return waterMarkContent; }
    [[nodiscard]] bool isAddPageNumber() const override { return addPageNumber; }
    [[nodiscard]] std::int32_t pageNumberPosition() const override { return position; }
    [[nodiscard]] QString getNextPageNumberPrefixString() const override { return prefix; }
    [[nodiscard]] TextAttributes getStringAttr() const override { return attributes; }
    [[nodiscard]] std::int32_t getPageNumberBegin() const override { return begin; }
    [[nodiscard]] std::int32_t getPageNumberOffset() const override { return offset; }
    [[nodiscard]] bool isUserEncrypt() const override { return userEncrypt; }
    [[nodiscard]] QString userEncryptPassword() const override { return userPassword; }
    [[nodiscard]] bool isOwnerEncrypt() const override { return ownerEncrypt; }
    [[nodiscard]] QString ownerEncryptPassword() const override { return ownerPassword; }
    [[nodiscard]] bool isCopyAllowed() const override { return copyAllowed; }
    [[nodiscard]] bool isPrintAllowed() const override { return printAllowed; }

    void registerTitle(const QString& value) override { note("title", value); }
    void registerAuthor(const QString& value) override { note("author", value); }
    void registerSubject(const QString& value) override { note("subject", value); }
    void registerKeywords(const std::optional<QStringList>& value) override {
        note("keywords", value ? QLatin1String("[") + value->join(QLatin1Char('|')) + QLatin1String("]") : QString());
    }
    void registerCreator(const QString& value) override { note("creator", value); }

    [[nodiscard]] QString resolveTitle() override { return resolved("resolveTitle", title); }
    [[nodiscard]] QString resolveAuthor() override { return resolved("resolveAuthor", author); }
    [[nodiscard]] QString resolveSubject() override { return resolved("resolveSubject", subject); }
    [[nodiscard]] QString resolveKeywords() override { return resolved("resolveKeywords", keywords); }
    [[nodiscard]] QString resolveCreator() override { return resolved("resolveCreator", creator); }

private:
    void note(const char* name, const QString& value) {
        calls.append(QLatin1String(name) + (value.isNull() ? QString() : QLatin1Char('=') + value));
    }
    [[nodiscard]] QString resolved(const char* call, const QString& value) {
        calls.append(QString::fromLatin1(call));
        return value;
    }
};

}  // namespace quillon::test
