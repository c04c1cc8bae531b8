// What ends a program from outside: the session's end, a Ctrl+C in the terminal.
#pragma once

#include "files/FileDescriptor.h"

#include <QObject>

namespace quillmark {

/// Tells of the first SIGTERM, SIGINT or SIGHUP, from the event loop, so that the program can end
/// in order. A second one ends it at once. There is one of these at most, on the main thread.
class EndSignals final : public QObject {
    Q_OBJECT
public:
    explicit EndSignals(QObject* parent = nullptr);

Q_SIGNALS:
    void asked();

private:
    FileDescriptor m_end; // readable once a signal has come
};

} // namespace quillmark
