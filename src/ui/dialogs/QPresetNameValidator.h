// Which names a preset may be given.
#pragma once

#include <QValidator>

/// Acceptable: the empty text, and letters and digits of any script, blanks and _-!$().,+=& in any number. Everything
/// else is Invalid, so it cannot be typed. [any]
class QPresetNameValidator : public QValidator {
    Q_OBJECT

public:
    using QValidator::QValidator;

    State validate(QString& input, int& position) const override;
};
