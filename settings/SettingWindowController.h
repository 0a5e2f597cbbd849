#pragma once

#include "merge/MergeSettings.h"
#include "platform/ui/Panels.h"
#include "platform/ui/WindowController.h"
#include "settings/NameResolver.h"
#include "settings/SettingsStore.h"

#include <QColor>
#include <QString>
#include <QUrl>

#include <memory>

class QAction;
class QLineEdit;
class QMenu;
class QWidget;

namespace quillon {

class UserDefaults;

namespace Ui {
class SettingWindow;
}

/// The settings sheet, and at the same time the settings of every merge: what the controls show is in force, applied or
/// not, and the store keeps what was applied last.
///
/// Ask for window() before anything else: it loads the controls and puts the stored settings into them. Main thread
/// only, except for what MergeSettings says; nothing is locked, so the controls must rest while a job runs.
class SettingWindowController final : public WindowController, public MergeSettings {
    Q_OBJECT

public:
    /// Which groups of settings were touched since they were last restored or saved.
    struct ChangeFlags {
        bool isAppendPageChange = false;
        bool isAddWatermarkChange = false;
        bool isDPIChange = false;
        bool isTitleChange = false;
        bool isAuthorChange = false;
        bool isKeywordsChange = false;
        bool isSubjectChange = false;
        bool isAddBookmarkChange = false;
        bool isAddPageNumberChange = false;
        bool isUserEncryptChange = false;
        bool isOwnerEncryptChange = false;

        friend bool operator==(const ChangeFlags&, const ChangeFlags&) = default;
    };

    /// The panels and the store must live as long as this object.
    SettingWindowController(const QString& windowNibName, Panels& panels, UserDefaults& defaults);
    ~SettingWindowController() override;

    /// Fills the controls from the store and clears the change flags. The details of a group that is stored off are not
    /// read; their controls keep what they show.
    void restoreUserDefaults();
    /// Writes the groups whose change flag is set, through to the disk, and clears their flags. The image resolution is
    /// only ever read, whatever its flag.
    void saveUserDefault();
    /// Puts the factory values into the controls. Texts and numbers that belong to an option keep their values.
    void defaultSetting();
    /// The same, and marks every group as changed, so that the next save writes all of them.
    void returnToDefault();

    /// Ends a session of the sheet: hides it.
    void DidEndSheet(SheetDialog& sheet, int returnCode);

    [[nodiscard]] const ChangeFlags& changeFlags() const noexcept { return changes_; }

    /// The PDF file chosen for the padding page, not the text of the field; empty: none was.
    [[nodiscard]] const QUrl& cachePathURL() const noexcept { return cachePathURL_; }
    void setCachePathURL(const QUrl& url) { cachePathURL_ = url; }
    /// The font family chosen for page numbers. After the factory reset it is the text of the position box, which is
    /// what a following save stores; the example then shows no font of its own.
    [[nodiscard]] const QString& cacheFontName() const noexcept { return cacheFontName_; }
    void setCacheFontName(const QString& name) { cacheFontName_ = name; }
    /// The colour chosen for page numbers; invalid until the sheet is loaded.
    [[nodiscard]] const QColor& cacheColor() const noexcept { return cacheColor_; }
    void setCacheColor(const QColor& color) { cacheColor_ = color; }

    [[nodiscard]] bool isAddPage() const override;
    [[nodiscard]] bool isAddBlankPage() const override;
    [[nodiscard]] QUrl addedPageUrl() const override;
    /// Looks at the control on the main thread and waits for that, from whichever thread it is called.
    [[nodiscard]] bool isAddBookmark() override;
    [[nodiscard]] bool isKeepOriginalBookmark() const override;
    [[nodiscard]] bool isUseFileName() const override;
    [[nodiscard]] bool isRemoveExtension() const override;
    [[nodiscard]] bool isAddWaterMark() const override;
    [[nodiscard]] QString getWaterMarkContent() const override;
    [[nodiscard]] bool isAddPageNumber() const override;
    [[nodiscard]] std::int32_t pageNumberPosition() const override;
    [[nodiscard]] QString getNextPageNumberPrefixString() const override;
    /// Empty when no font of the name in the font box is installed.
    [[nodiscard]] TextAttributes getStringAttr() const override;
    [[nodiscard]] std::int32_t getPageNumberBegin() const override;
    [[nodiscard]] std::int32_t getPageNumberOffset() const override;
    [[nodiscard]] bool isUserEncrypt() const override;
    [[nodiscard]] QString userEncryptPassword() const override;
    [[nodiscard]] bool isOwnerEncrypt() const override;
    [[nodiscard]] QString ownerEncryptPassword() const override;
    [[nodiscard]] bool isCopyAllowed() const override;
    [[nodiscard]] bool isPrintAllowed() const override;

    void registerTitle(const QString& title) override;
    void registerAuthor(const QString& author) override;
    void registerSubject(const QString& subject) override;
    void registerKeywords(const std::optional<QStringList>& keywords) override;
    void registerCreator(const QString& creator) override;
    [[nodiscard]] QString resolveTitle() override;
    [[nodiscard]] QString resolveAuthor() override;
    [[nodiscard]] QString resolveSubject() override;
    [[nodiscard]] QString resolveKeywords() override;
    [[nodiscard]] QString resolveCreator() override;

protected:
    void loadInterface(SheetDialog& window) override;
    void windowDidLoad() override;

private:
    // Loading
    void connectPageControls();
    void connectDocumentControls();
    void connectPasswordControls();
    void connectButtons();
    void setUpFontMenu();
    void setUpFormatter();
    void setDelegate(QLineEdit& field);
    [[nodiscard]] std::unique_ptr<QMenu> getMenu();
    [[nodiscard]] std::unique_ptr<QAction> getMenuItem(const QString& title, bool hidden);

    // Restoring and saving
    void restoreAppendPage();
    void restoreWatermark();
    void restoreInformation();
    void restoreBookmark();
    void restorePageNumber();
    void restorePageNumberFont();
    void restorePasswords();
    void saveAppendPage();
    void saveWatermark();
    void saveInformation();
    void saveBookmark();
    void savePageNumber();
    void savePasswords();

    // State of the controls
    [[nodiscard]] static QColor getColor(bool enabled);
    [[nodiscard]] static Qt::CheckState getCheckState(bool on);
    void changeAppendPageState(bool on);
    void changeAddWatermarkState(bool on);
    void changeAddBookmarkState(bool on);
    void changeAddBookmarkUseFilenameState(bool on);
    void changeAddPageNumberState(bool on);
    void changeUserPasswordState(bool on);
    void changeOwnerPasswordState(bool on);
    void updateExampleLabel();
    void refreshWatermarkState();

    // Actions
    void appendPageCheckOnClicked();
    void appendPageOptionOnClicked();
    void appendPageSelectOnClicked();
    void addWatermarkCheckOnClicked();
    void addBookmarkCheckOnClicked();
    void addBookmarkOptionRadioOnClicked();
    void addBookmarkUseFilenameCheckOnClicked();
    void addBookmarkRemoveOnClicked();
    void addPageNumberCheckOnClicked();
    void addPageNumberPositionOnClicked();
    void addPageNumberFontOnClicked();
    void colorWellOnClicked();
    void usePasswordCheckOnClicked();
    void ownerPasswordOnClicked();
    void ownerPasswordPrintOnClicked();
    void ownerPasswordCopyOnClicked();
    void titleMacroOnClicked();
    void authorMacroOnClicked();
    void subjectMacroOnClicked();
    void keywordsMacroOnClicked();
    void applyOnClicked();
    void cancelOnClicked();
    void defaultOnClicked();
    void controlTextDidChange(const QLineEdit& field);

    // Checking and closing
    [[nodiscard]] bool validateInput();
    [[nodiscard]] bool refuse(QLineEdit& field, const QString& message);
    bool showAlert(const QString& message);
    void alertDidEnd(QWidget& alert);
    void doClose();

    Panels& panels_;
    SettingsStore store_;
    std::unique_ptr<Ui::SettingWindow> ui_;

    QUrl cachePathURL_;
    QString cacheFontName_;
    QColor cacheColor_;
    ChangeFlags changes_;
    int addWatermarkState_ = 0;  // of the bookmark check box, in spite of its name
    NameResolver nameResolver_;
};

}  // namespace quillon
