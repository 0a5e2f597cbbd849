#pragma once

class QPainter;

namespace quillon {

/// Makes a painter the one that cells draw into, for as long as the object lives. Contexts nest. Main thread only.
class GraphicsContext {
public:
    explicit GraphicsContext(QPainter& painter) noexcept;
    GraphicsContext(const GraphicsContext&) = delete;
    GraphicsContext& operator=(const GraphicsContext&) = delete;
    ~GraphicsContext();

    /// Only while a context exists.
    [[nodiscard]] static QPainter& current();

private:
    QPainter& painter_;
    GraphicsContext* outer_;
};

}  // namespace quillon
