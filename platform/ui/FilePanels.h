#pragma once

#include "platform/ui/Panels.h"

namespace quillon {

/// The file dialogs of the desktop.
class FilePanels final : public Panels {
public:
    void beginOpenPanel(const OpenPanel& panel, QWidget& modalForWindow, OpenHandler completionHandler) override;
    [[nodiscard]] QList<QUrl> runOpenPanel(const OpenPanel& panel, QWidget* parent) override;
    void beginSavePanel(const SavePanel& panel, QWidget& modalForWindow, SaveHandler completionHandler) override;
};

}  // namespace quillon
