// The C API's file handles: thin wrappers over qv::File.

#include "platform/file.h"
#include "quorvex/base.h"

QvFile QvOpenFileForRead(const char* path) {
  if (path == nullptr) return QV_NO_FILE;
  qv::File* file = qv::File::Open(path, qv::OpenMode::kReadExisting);
  return file == nullptr ? QV_NO_FILE : file->handle();
}

void QvCloseFile(QvFile file) {
  delete qv::File::FromHandle(file);
}

int QvFileIsOpen(QvFile file) {
  return qv::File::FromHandle(file) != nullptr ? 1 : 0;
}
