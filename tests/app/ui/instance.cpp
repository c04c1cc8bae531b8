// A program of which there is one: tells on standard output what it is and what it is handed, and
// ends when its standard input does.
// usage: instance RUNTIME-FOLDER DATA-FOLDER PATIENCE-MILLISECONDS [TOKEN [FILE...]]
#include "ui/SingleInstance.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

using quillmark::SingleInstance;
using quillmark::StartRequest;

namespace {

void say(const std::string& line)
{
    static_cast<void>(std::puts(line.c_str()));
    static_cast<void>(std::fflush(stdout));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount < 4) return 2;
    StartRequest request;
    if (argumentCount > 4) request.activationToken = arguments[4];
    for (int i = 5; i < argumentCount; ++i)
        request.files.emplace_back(arguments[i]);

    SingleInstance instance(arguments[1], arguments[2]);
    switch (instance.enter(request, std::chrono::milliseconds(std::atoi(arguments[3])))) {
    case SingleInstance::Role::first:
        break;
    case SingleInstance::Role::handedOver:
        say("handed over");
        return 0;
    case SingleInstance::Role::noAnswer:
        say("no answer");
        return 0;
    }
    QCoreApplication application(argumentCount, arguments);
    QObject::connect(&instance, &SingleInstance::requested, &application,
                     [](const StartRequest& taken) {
                         std::string line = "token " + taken.activationToken;
                         for (const auto& file : taken.files)
                             line += " file " + file.native();
                         say(line);
                     });
    instance.listen();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    say("first");
    return QCoreApplication::exec();
}
