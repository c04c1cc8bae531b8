#include "pdf/EmbeddedProgram.h"
