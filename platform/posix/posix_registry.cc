#include "platform/posix/posix_registry.h"

#include <system_error>
#include <utility>

#include "base/codepage.h"

namespace pw {
namespace {

// Far more than any registry's export; what is larger is something else.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

std::filesystem::path RealPath(const std::filesystem::path& file) {
  std::error_code failure;
  std::filesystem::path real = std::filesystem::weakly_canonical(file, failure);
  return failure ? file : real;
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
    : options(std::move(given)), file(RealPath(options.file)), stamp(StampOf(file)) {
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

void PosixRegistry::Refresh() {
  const std::optional<FileStamp> now = StampOf(file);
  if (now == stamp) return;
  stamp = now;
  Read();
}

// An older content stays where the new one can't be used, for the keys that are open.
void PosixRegistry::Read() {
  const std::string name = options.file.string();
  const SharedFileContent content = ReadSharedFile(file, kLargestFile);
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
  if (const auto failure = Save()) {
    Warn(*failure + "; the changes made to it aren't saved");
    return;
  }
  changes.clear();
  text.ForgetAltered();
}

std::optional<std::string> PosixRegistry::Save() {
  const SharedFileLock lock(file);
  if (!lock.IsHeld()) return options.file.string() + ": it can't be locked";
  // Whatever the stamp says: it could miss a change of the last few milliseconds, and this would
  // undo it.
  stamp = StampOf(file);
  Read();
  if (error) return error;
  if (!text.IsAltered()) return std::nullopt;
  if (const auto failure = ReplaceSharedFile(file, text.Render())) {
    return options.file.string() + ": " + *failure;
  }
  stamp = StampOf(file);
  return std::nullopt;
}

void PosixRegistry::Warn(const std::string& line) {
  if (options.warn) options.warn(line);
}

}  // namespace pw
