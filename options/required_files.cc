#include "options/required_files.h"

namespace pw::options {

PWStringVector RequiredFiles() {
  PWStringVector files;
  for (const char* file : {"CALL.WMW", "CSCA.WMW", "EVEN.WMW", "INIT.WMW", "RECR.WMW", "TASK.WMW",
                           "WMCard", "WMContent", "WMNoteHeader", "WMWrite"}) {
    files.AppendText(file);
  }
  return files;
}

}  // namespace pw::options
