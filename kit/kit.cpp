#include "kit/bytes.h"
