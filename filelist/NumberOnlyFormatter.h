#pragma once

#include <QDoubleValidator>

namespace quillon {

/// Lets nothing but the digits 0 to 9 be typed into a field.
class NumberOnlyFormatter final : public QDoubleValidator {
    Q_OBJECT

public:
    explicit NumberOnlyFormatter(QObject* parent = nullptr);

    /// Whether `partialString` may stand in a field while it is being edited. What is refused gets neither a
    /// replacement nor an explanation: the two other parameters, which may be null, are left as they are.
    [[nodiscard]] bool isPartialStringValid(const QString& partialString, QString* newEditingString = nullptr,
                                            QString* errorDescription = nullptr) const;

    /// Acceptable or invalid, nothing between.
    State validate(QString& input, int& position) const override;
};

}  // namespace quillon
