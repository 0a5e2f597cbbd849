#pragma once

#include <QList>
#include <QStringList>
#include <QUrl>

#include <functional>

class QWidget;

namespace quillon {

/// What an open panel lets a person choose.
struct OpenPanel {
    bool canChooseFiles = true;
    bool canChooseDirectories = false;
    bool allowsMultipleSelection = false;
    /// Endings without the dot; empty: every file.
    QStringList allowedFileTypes;
};

/// What a save panel asks for.
struct SavePanel {
    /// The ending, without the dot, that the chosen file has in any case.
    QString allowedFileType;
};

/// Lets a person choose files. The windows get theirs from the program's entry; a test gives them one that answers by
/// itself. Main thread only.
class Panels {
public:
    /// What a panel returns when it was answered with OK; anything else means that it was cancelled.
    static constexpr int okButton = 1;

    /// Called on the main thread with the result and, after OK, what was chosen, in the panel's order.
    using OpenHandler = std::function<void(int result, const QList<QUrl>& urls)>;
    /// The same for the one file of a save panel.
    using SaveHandler = std::function<void(int result, const QUrl& url)>;

    Panels() = default;
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;
    virtual ~Panels() = default;

    /// Shows the panel as a sheet in front of `modalForWindow` and returns at once.
    virtual void beginOpenPanel(const OpenPanel& panel, QWidget& modalForWindow, OpenHandler completionHandler) = 0;

    /// Shows the panel, blocks all windows and returns what was chosen; empty when it was cancelled.
    [[nodiscard]] virtual QList<QUrl> runOpenPanel(const OpenPanel& panel, QWidget* parent) = 0;

    /// Shows the panel as a sheet and returns at once. A person has agreed to a file that exists already.
    virtual void beginSavePanel(const SavePanel& panel, QWidget& modalForWindow, SaveHandler completionHandler) = 0;
};

}  // namespace quillon
