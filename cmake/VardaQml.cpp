// SPDX-License-Identifier: MIT
// Compiled into applications that link Varda::Qml. They use the library from QML only, and without
// this a linker may leave it out.
void qml_register_types_Varda();

namespace {

[[maybe_unused]] void (*volatile const vardaQml)() = qml_register_types_Varda;

} // namespace
