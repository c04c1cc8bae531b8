#include "coding/RecordCoding.h"
