#include "pdf/AuditRow.h"
