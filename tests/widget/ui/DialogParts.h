// The parts of a dialog by their names.
#pragma once

#include <QWidget>
#include <stdexcept>

namespace KivoraTest {

/// The one of that name. Throws std::runtime_error with the name when there is none.
template <class Widget>
Widget& In(QWidget& dialog, const char* name) {
    auto* const found = dialog.findChild<Widget*>(name);
    if (found == nullptr) {
        throw std::runtime_error(name);
    }
    return *found;
}

}  // namespace KivoraTest
