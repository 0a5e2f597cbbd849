#pragma once

#include "merge/MergeSettings.h"

namespace quillon {

/// The settings as they are before anyone has changed them: nothing is added to the pages, the first input's document
/// information is kept.
class FactorySettings final : public MergeSettings {
public:
    [[nodiscard]] bool isAddPage() const override { return false; }
    [[nodiscard]] bool isAddBlankPage() const override { return true; }
    [[nodiscard]] QUrl addedPageUrl() const override { return {}; }
    [[nodiscard]] bool isAddBookmark() override { return false; }
    [[nodiscard]] bool isKeepOriginalBookmark() const override { return true; }
    [[nodiscard]] bool isUseFileName() const override { return false; }
    [[nodiscard]] bool isRemoveExtension() const override { return false; }
    [[nodiscard]] bool isAddWaterMark() const override { return false; }
    [[nodiscard]] QString getWaterMarkContent() const override { return QStringLiteral(""); }
    [[nodiscard]] bool isAddPageNumber() const override { return false; }
    [[nodiscard]] std::int32_t pageNumberPosition() const override { return 1; }
    [[nodiscard]] QString getNextPageNumberPrefixString() const override { return QStringLiteral(""); }
    [[nodiscard]] TextAttributes getStringAttr() const override { return {}; }
    [[nodiscard]] std::int32_t getPageNumberBegin() const override { return 0; }
    [[nodiscard]] std::int32_t getPageNumberOffset() const override { return 1; }
    [[nodiscard]] bool isUserEncrypt() const override { return false; }
    [[nodiscard]] QString userEncryptPassword() const override { return QStringLiteral(""); }
    [[nodiscard]] bool isOwnerEncrypt() const override { return false; }
    [[nodiscard]] QString ownerEncryptPassword() const override { return QStringLiteral(""); }
    [[nodiscard]] bool isCopyAllowed() const override { return true; }
    [[nodiscard]] bool isPrintAllowed() const override { return true; }

    void registerTitle(const QString& title) override { title_ = title; }
    void registerAuthor(const QString& author) override { author_ = author; }
    void registerSubject(const QString& subject) override { subject_ = subject; }
    void registerKeywords(const std::optional<QStringList>& keywords) override {
        keywords_ = keywords ? keywords->join(QLatin1Char(',')) : QString();
    }
    void registerCreator(const QString& /*creator*/) override {}

    [[nodiscard]] QString resolveTitle() override { return title_; }
    [[nodiscard]] QString resolveAuthor() override { return author_; }
    [[nodiscard]] QString resolveSubject() override { return subject_; }
    [[nodiscard]] QString resolveKeywords() override { return keywords_; }
    [[nodiscard]] QString resolveCreator() override { return QStringLiteral("Quillon"); }

private:
    QString title_;
    QString author_;
    QString subject_;
    QString keywords_;
};

}  // namespace quillon
