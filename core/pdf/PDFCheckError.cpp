#include "pdf/PDFCheckError.h"
