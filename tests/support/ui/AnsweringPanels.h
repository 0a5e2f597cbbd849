#pragma once

#include "platform/ui/Panels.h"

#include <QList>
#include <QUrl>

#include <deque>
#include <utility>
#include <vector>

namespace quillon::test {

/// Answers panels in the place of a person. Without a prepared answer a panel is cancelled.
class AnsweringPanels final : public Panels {
public:
    /// What the next panels that have no answer yet choose; nothing stands for cancelling.
    void answerNext(QList<QUrl> urls) { answers_.push_back(std::move(urls)); }

    /// The panels that were shown, in order.
    std::vector<OpenPanel> openPanels;
    std::vector<OpenPanel> modalOpenPanels;
    std::vector<SavePanel> savePanels;

    void beginOpenPanel(const OpenPanel& panel, QWidget& /*modalForWindow*/, OpenHandler handler) override {
        openPanels.push_back(panel);
        const QList<QUrl> urls = next();
        handler(urls.isEmpty() ? 0 : okButton, urls);
    }
    [[nodiscard]] QList<QUrl> runOpenPanel(const OpenPanel& panel, QWidget* /*parent*/) override {
        modalOpenPanels.push_back(panel);
        return next();
    }
    void beginSavePanel(const SavePanel& panel, QWidget& /*modalForWindow*/, SaveHandler handler) override {
        savePanels.push_back(panel);
        const QList<QUrl> urls = next();
        handler(urls.isEmpty() ? 0 : okButton, urls.isEmpty() ? QUrl() : urls.constFirst());
    }

private:
    [[nodiscard]] QList<QUrl> next() {
        if (answers_.empty()) return {};
        QList<QUrl> urls = std::move(answers_.front());
        answers_.pop_front();
        return urls;
    }

    std::deque<QList<QUrl>> answers_;
};

}  // namespace quillon::test
