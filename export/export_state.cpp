#include "export/export_state.h"

namespace exporting {

ExportState state;

}  // namespace exporting
