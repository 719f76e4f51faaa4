#include "export/csv_formats.h"

#include <algorithm>

namespace exporting {

char* writeAnyFixed(char* to, float value, int decimals, char point) {
    char* const end = writeText(to, services::floatToText(value, decimals));
    std::replace(to, end, '.', point);
    return end;
}

}  // namespace exporting
