#include "reader/Service.h"

int main()
{
    return quillmark::reader::runReader(quillmark::reader::ordinaryReading());
}
