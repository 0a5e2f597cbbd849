#include "tests/app/MainWindowTest.h"

#include <QTest>

#include <functional>
#include <vector>

using namespace quillon;

namespace {

/// The seven commands that depend on the list, and the four that do not, in the order of the toolbar.
constexpr auto allDisabled = "add folder - - - - - - settings help -";

class ToolbarEnabling : public test::MainWindowTest {
protected:
    /// The enabled commands by short names; `-` stands for a disabled one.
    [[nodiscard]] QString enabled() {
        QCoreApplication::processEvents();
        const std::vector<std::pair<const char*, const char*>> commands{
            {"add", "actionAddFile"},        {"folder", "actionAddFolder"}, {"remove", "actionRemoveFile"},
            {"all", "actionRemoveAll"},      {"up", "actionMoveUp"},        {"down", "actionMoveDown"},
            {"method", "actionMergeMethod"}, {"decrypt", "actionDecrypt"},  {"settings", "actionSettings"},
            {"help", "actionHelp"},          {"merge", "actionMerge"}};
        QStringList result;
        for (const auto& [name, object] : commands) {
            result.append(action(object).isEnabled() ? QString::fromLatin1(name) : QStringLiteral("-"));
        }
        return result.join(QLatin1Char(' '));
    }
};

TEST_F(ToolbarEnabling, TheItemsHaveTheLabelsOfTheRules) {
    const std::vector<std::pair<const char*, const char*>> labels{
        {"actionRemoveFile", "Remove File"}, {"actionRemoveAll", "Remove All"},     {"actionMerge", "Merge"},
        {"actionDecrypt", "Decrypt"},        {"actionMergeMethod", "Merge Method"}, {"actionMoveUp", "Move Up"},
        {"actionMoveDown", "Move Down"}};
    for (const auto& [object, label] : labels) EXPECT_EQ(action(object).iconText(), QString::fromLatin1(label));
}

TEST_F(ToolbarEnabling, EveryRuleBeforeAndAfterEveryCommand) {
    struct Step {
        const char* what;
        std::function<void()> run;
        const char* enabled;
    };
    const std::vector<Step> steps{
        {"empty list", [] {}, allDisabled},
        {"a file is added", [this] { addPdfs({QStringLiteral("a")}); },
         "add folder remove all - - - - settings help merge"},
        {"the only row is selected", [this] { select(0); }, "add folder remove all - - method - settings help merge"},
        {"two more are added",
         [this] {
             addPdfs({QStringLiteral("b"), QStringLiteral("c")});
         },
         "add folder remove all - down method - settings help merge"},
        {"the middle row is selected", [this] { select(1); },
         "add folder remove all up down method - settings help merge"},
        {"the last row is selected", [this] { select(2); }, "add folder remove all up - method - settings help merge"},
        {"it is moved up", [this] { choose("actionMoveUp"); },
         "add folder remove all up down method - settings help merge"},
        {"and up again", [this] { choose("actionMoveUp"); },
         "add folder remove all - down method - settings help merge"},
        {"it is moved down", [this] { choose("actionMoveDown"); },
         "add folder remove all up down method - settings help merge"},
        {"its file turns out to need a password",
         [this] {
             entry(1).setNeedPassword(1);
             list().updatePassowrdColumn(1, true);
         },
         "add folder remove all up down method decrypt settings help merge"},
        {"another row is selected", [this] { select(0); }, "add folder remove all - down method - settings help merge"},
        {"the row that needs one is selected", [this] { select(1); },
         "add folder remove all up down method decrypt settings help merge"},
        {"the password was given", [this] { list().updatePassowrdColumn(1, false); },
         "add folder remove all up down method - settings help merge"},
        {"nothing is selected", [this] { table().deselectRow(1); },
         "add folder remove all - - - - settings help merge"},
        {"a row is removed",
         [this] {
             select(2);
             choose("actionRemoveFile");
         },
         "add folder remove all up - method - settings help merge"},
        {"all are removed", [this] { choose("actionRemoveAll"); }, allDisabled},
    };
    for (const Step& step : steps) {
        step.run();
        EXPECT_EQ(enabled().toStdString(), step.enabled) << step.what;
    }
}

TEST_F(ToolbarEnabling, ACommandThatIsNoLongerPossibleDoesNothing) {
    addPdfs({QStringLiteral("a"), QStringLiteral("b")});
    select(1);
    QCoreApplication::processEvents();
    for (int times = 0; times < 3; ++times) action("actionMoveUp").trigger();
    EXPECT_EQ(names(), (QStringList{QStringLiteral("b"), QStringLiteral("a")}));
    for (const char* name : {"actionRemoveAll", "actionMergeMethod", "actionMoveDown", "actionDecrypt"}) {
        action(name).trigger();
    }
    EXPECT_EQ(names(), QStringList());
}

TEST_F(ToolbarEnabling, AnyOtherLabelIsEnabled) {
    EXPECT_TRUE(controller_.validateToolbarItem(QStringLiteral("Anything")));
    EXPECT_TRUE(controller_.validateToolbarItem(QStringLiteral("merge")));
}

TEST_F(ToolbarEnabling, DecryptIsEnabledOnceTheCellOfAProtectedFileWasDrawn) {
    // Recognised by its Encrypt entry; it is not opened here.
    std::string bytes = test::PdfFixture("p", 1).bytes();
    const std::string trailer = "trailer\n<<";
    bytes.insert(bytes.rfind(trailer) + trailer.size(), " /Encrypt << /Filter /Other >> ");
    add({urlOf(dir_.write("locked.pdf", bytes))});
    select(0);
    EXPECT_TRUE(test::waitFor([this] { return action("actionDecrypt").isEnabled(); }));
}

}  // namespace
