#include "support/PDFBytes.h"
