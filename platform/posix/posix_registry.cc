#include "platform/posix/posix_registry.h"

#include <system_error>
#include <thread>
#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

// Far more than any registry's export; what is larger is something else.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

constexpr int kMostTries = 5;
constexpr std::chrono::milliseconds kPause{10};

std::filesystem::path RealPath(const std::filesystem::path& file) {
  std::error_code failure;
  const std::filesystem::path absolute = std::filesystem::absolute(file, failure);
  if (failure) return file;
  std::filesystem::path real = std::filesystem::weakly_canonical(absolute, failure);
  return failure ? absolute : real;
}

// The same for all spellings of a key and a value.
std::string IndexOf(const std::string& path, const std::optional<std::string>& name) {
  std::string index = path;
  if (name) index.append(1, '\0').append(*name);
  for (char& c : index) c = static_cast<char>(CodePageLower(static_cast<unsigned char>(c)));
  return index;
}

}  // namespace

class PosixRegistry::Key : public RegistryKey {
 public:
  Key(PosixRegistry& owner, std::string path, RegistryAccess access)
      : owner(owner), path(std::move(path)), access(access) {}
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;
  ~Key() override {
    if (access == RegistryAccess::kReadWrite) owner.Flush();
  }

  std::optional<RegistryValue> Read(const std::string& name) override {
    const RegistryValue* const value = owner.text.Find(path, name);
    return value == nullptr ? std::nullopt : std::optional(*value);
  }

  bool Write(const std::string& name, const RegistryValue& value) override {
    return access == RegistryAccess::kReadWrite && owner.Set({path, name, value});
  }

 private:
  PosixRegistry& owner;
  std::string path;
  RegistryAccess access;
};

PosixRegistry::PosixRegistry(RegistryStoreOptions given)
    : options(std::move(given)), file(RealPath(options.file)) {
  Read();
}

std::unique_ptr<RegistryKey> PosixRegistry::Open(const std::string& path, RegistryAccess access) {
  Refresh();
  if (error || !text.HasKey(path)) return nullptr;
  if (access == RegistryAccess::kReadWrite && !MayWrite()) return nullptr;
  return std::make_unique<Key>(*this, RegistryText::PlainPath(path), access);
}

std::unique_ptr<RegistryKey> PosixRegistry::Create(const std::string& path) {
  Refresh();
  if (error || !MayWrite()) return nullptr;
  const std::string plain = RegistryText::PlainPath(path);
  if (!text.HasKey(plain) && !Set({plain, std::nullopt, {}})) return nullptr;
  return std::make_unique<Key>(*this, plain, RegistryAccess::kReadWrite);
}

// What couldn't be used may be another time, though the file hasn't changed.
void PosixRegistry::Refresh() {
  if (error || StampOf(file) != stamp) Read();
}

// An editor that writes a file in place, or moves the old one aside first, leaves a moment in which
// it has no content.
SharedFileContent PosixRegistry::ReadFile() const {
  for (int tries = 1;; ++tries) {
    SharedFileContent content = ReadSharedFile(file, kLargestFile);
    if (content.error || !content.bytes.empty() || !heldRegistry) return content;
    if (tries == kMostTries) {
      content.error = content.stamp ? "it is empty, though it has held a registry before"
                                    : "it is gone, though it was there before";
      return content;
    }
    std::this_thread::sleep_for(kPause);
  }
}

// An older content stays where the new one can't be used, for the keys that are open.
void PosixRegistry::Read() {
  const std::string name = options.file.string();
  const SharedFileContent content = ReadFile();
  stamp = content.stamp;
  error = std::nullopt;
  if (content.error) {
    error = name + ": " + *content.error;
    return;
  }
  auto parsed = RegistryText::Parse(content.bytes, [&](std::size_t line, const char* what) {
    const std::string warning = name + ":" + std::to_string(line) + ": " + what + "; it is skipped";
    if (warned.insert(warning).second) Warn(warning);
  });
  if (!parsed) {
    error = name + ": it is no registry export, since its first line isn't \"REGEDIT4\" or " +
            "\"Windows Registry Editor Version 5.00\"";
    return;
  }
  text = std::move(*parsed);
  heldRegistry = !content.bytes.empty();
  for (const auto& [index, change] : changes) Apply(change);
}

bool PosixRegistry::MayWrite() const {
  return options.mode == RegistryMode::kOverlay ||
         (options.mode == RegistryMode::kReadWrite && MayReplace(file));
}

bool PosixRegistry::Apply(const Change& change) {
  return change.name ? text.Set(change.path, *change.name, change.value) : text.AddKey(change.path);
}

bool PosixRegistry::Set(const Change& change) {
  if (error || !Apply(change)) return false;
  changes.insert_or_assign(IndexOf(change.path, change.name), change);
  return true;
}

void PosixRegistry::Flush() {
  if (changes.empty() || options.mode != RegistryMode::kReadWrite) return;
  saveFailure = Save();
  if (saveFailure) {
    Warn(*saveFailure + "; the changes made to it aren't saved");
    return;
  }
  changes.clear();
  text.ForgetAltered();
}

std::optional<std::string> PosixRegistry::Save() {
  const std::string name = options.file.string();
  const SharedFileLock lock(file, options.lockWait);
  if (lock.Error()) return name + ": " + *lock.Error();
  for (int tries = 1;; ++tries) {
    // Whatever the stamp says: it could miss a change of the last few milliseconds, and this would
    // undo it.
    Read();
    if (error) return error;
    if (!text.IsAltered()) return std::nullopt;
    const auto failure = ReplaceSharedFile(file, text.Render(), stamp);
    const auto now = StampOf(file);
    if (!failure) {
      stamp = now;
      heldRegistry = true;
      return std::nullopt;
    }
    // Somebody who knows nothing of the lock may have changed it in the meantime.
    if (now == stamp || tries == kMostTries) return name + ": " + *failure;
  }
}

void PosixRegistry::Warn(const std::string& line) {
  if (options.warn) options.warn(line);
}

}  // namespace pw
