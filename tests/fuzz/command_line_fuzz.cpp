// Any arguments, a zero byte between them: they are taken as a whole or refused by a sentence.
#include <cstdint>
#include <cstdlib>

#include "app/CommandLine.h"

namespace {

using Kivora::CommandLine;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    QStringList arguments{"kivora"};
    for (const QByteArray& argument :
         QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)).split('\0')) {
        arguments << QString::fromLocal8Bit(argument);
    }
    const CommandLine line = CommandLine::Parse(arguments);
    if (!line.refusal.isEmpty()) {
        return 0;
    }
    Require(line.file.isEmpty() || (line.action == CommandLine::Action::kPlay && line.preset.isEmpty()));
    Require((line.action == CommandLine::Action::kRender) == !line.renderTo.isEmpty());
    Require(!line.mayHandOver || !line.file.isEmpty());
    Require(line.demonstrationDir.isEmpty() || line.pictureDir.isEmpty());
    return 0;
}
