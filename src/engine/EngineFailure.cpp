#include "engine/EngineFailure.h"

#include "engine/CKivora.h"
#include "nk/qt/nk_qt_string.h"

namespace Kivora {

namespace {
QString Compose(const char* source, const QString& name) {
    return CKivora::tr(source) + (name.isEmpty() ? QString() : ' ' + name);
}
}  // namespace

EngineFailure::EngineFailure(const char* source, const QString& name)
    : CException(NK::FromQt(Compose(source, name)).c_str()), source_(source), name_(name) {
}

QString EngineFailure::GetText() const {
    return Compose(source_, name_);
}

}  // namespace Kivora
