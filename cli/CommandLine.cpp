#include "cli/CommandLine.h"
