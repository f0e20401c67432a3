#include "lower/upward.h"
