#include "model/RandomUUID.h"

#include "model/QtText.h"

#include <QUuid>

namespace quillmark {

std::string randomUUID()
{
    return stdText(QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper());
}

} // namespace quillmark
