// Why the engine could not do something.
#pragma once

#include <QString>

#include "nk/nk_exception.h"

namespace Kivora {

/// Its message is in the language in force when it was thrown; its text is in that of the moment at which it is asked
/// for. [gui]
class EngineFailure : public NK::CException {
public:
    /// A text of the engine's (QT_TR_NOOP in CKivora), which outlives the failure, and the name of what failed, if any.
    explicit EngineFailure(const char* source, const QString& name = {});

    QString GetText() const;

private:
    const char* source_;
    QString name_;
};

}  // namespace Kivora
