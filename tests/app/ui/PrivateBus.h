// A session bus of the test's own, with the services that a test puts on it. No test meets those of
// the desktop on which it runs.
#pragma once

#include <QDBusConnection>
#include <QString>

namespace quillmark::test {

/// Starts the bus when it is first asked, makes it this process's session bus, and returns a second
/// connection to it, for services. It ends with the process.
[[nodiscard]] QDBusConnection privateBus();

} // namespace quillmark::test
