#error "<sqlucode.h> belongs to platform/data: the logic speaks to databases through platform/*.h"
