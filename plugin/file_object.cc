#include "plugin/file_object.h"

#include <new>

namespace {

PWRuntimeClass fileClass("WMFile", []() -> PWObject* { return new (std::nothrow) WMFile; });
PWRuntimeClass fileVectorClass("WMFileVector",
                               []() -> PWObject* { return new (std::nothrow) WMFileVector; });

}  // namespace

PWRuntimeClass* WMFile::RuntimeClass() {
  return &fileClass;
}

PWRuntimeClass* WMFileVector::RuntimeClass() {
  return &fileVectorClass;
}
