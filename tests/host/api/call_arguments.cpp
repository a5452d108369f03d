#include "host/api/call_arguments.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <set>
#include <stdexcept>
#include <utility>

#include "host/api/misuse_photographs.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

constexpr std::size_t kCanaries = 64;
constexpr std::byte kUntouched{0xA5};
constexpr std::size_t kVeryLong = 100000;
constexpr std::uintptr_t kFarHandle = std::uintptr_t{1} << 30;

void RequireOk(lumvik_host_status status) {
  if (status != LUMVIK_HOST_OK) throw std::runtime_error(lumvik_host_last_error());
}

std::string StateOf(lumvik_host_settings* settings) {
  char* json = nullptr;
  RequireOk(lumvik_host_settings_to_json(settings, &json));
  std::string text = json;
  lumvik_host_free(json);
  return text;
}

std::string StateOf(lumvik_host_photo* photo) {
  lumvik_host_settings* settings = nullptr;
  RequireOk(lumvik_host_get_settings(photo, &settings));
  std::string text = StateOf(settings);
  lumvik_host_settings_close(settings);
  return text;
}

lumvik_host_photo* OpenPhotograph(const std::string& path) {
  lumvik_host_photo* photo = nullptr;
  RequireOk(lumvik_host_open(path.c_str(), nullptr, &photo));
  return photo;
}

lumvik_host_photo* OpenSmallPhotograph() {
  return OpenPhotograph(PhotographPath());
}

lumvik_host_settings* CreateSettings() {
  lumvik_host_settings* settings = nullptr;
  RequireOk(lumvik_host_settings_create(&settings));
  RequireOk(lumvik_host_settings_set_number(settings, "contrast", 10));
  constexpr std::array<float, 4> kCurve = {0, 0.1F, 1, 0.9F};
  RequireOk(lumvik_host_settings_set_curve(settings, "tone_curves.red", kCurve.data(), kCurve.size() / 2));
  return settings;
}

}  // namespace

CallArguments::CallArguments(int variation, const HandlesOfParent* parent)
    : countdown_(variation), parent_(parent), files_before_(Files()) {}

CallArguments::~CallArguments() {
  for (const auto& close : closes_) close();
}

bool CallArguments::Takes(const std::string& misuse, int expected) {
  if (--countdown_ != 0) return false;
  misuse_ = misuse;
  expected_ = expected;
  return true;
}

// What to pass for a handle that this object opened, and closes.
template <typename Handle, typename OtherHandle>
Handle* CallArguments::Passed(Handle* handle, lumvik_host_status (*close)(Handle*),
                              OtherHandle* (*open_other)(), lumvik_host_status (*close_other)(OtherHandle*)) {
  has_handle_ = true;
  closes_.emplace_back([=] { close(handle); });
  const auto value = reinterpret_cast<std::uintptr_t>(handle);
  if (Takes("a closed handle", LUMVIK_HOST_INVALID_HANDLE)) {
    RequireOk(close(handle));
    return handle;
  }
  if (Takes("a handle of another kind", LUMVIK_HOST_INVALID_HANDLE)) {
    OtherHandle* const other = open_other();
    closes_.emplace_back([=] { close_other(other); });
    return reinterpret_cast<Handle*>(other);
  }
  if (Takes("an address", LUMVIK_HOST_INVALID_HANDLE)) return reinterpret_cast<Handle*>(this);
  if (Takes("a handle plus 1", LUMVIK_HOST_INVALID_HANDLE)) return reinterpret_cast<Handle*>(value + 1);
  if (Takes("a handle not yet given", LUMVIK_HOST_INVALID_HANDLE)) {
    return reinterpret_cast<Handle*>(value + kFarHandle);
  }
  if (Takes("the largest handle", LUMVIK_HOST_INVALID_HANDLE)) return reinterpret_cast<Handle*>(UINTPTR_MAX);
  before_.emplace_back([=, state = StateOf(handle)] { return StateOf(handle) == state; });
  return handle;
}

lumvik_host_photo* CallArguments::TakePhoto(bool with_mask, int if_null) {
  if (parent_ != nullptr) {
    has_handle_ = true;
    return parent_->photo;
  }
  if (Takes("a null photo", if_null)) return nullptr;
  lumvik_host_photo* const photo = OpenPhotograph(with_mask ? RawPhotographPath() : PhotographPath());
  if (with_mask) RequireOk(lumvik_host_find_subject(photo, -1, -1));
  const std::string earlier = misuse_;
  lumvik_host_photo* const passed =
      Passed(photo, lumvik_host_close, CreateSettings, lumvik_host_settings_close);
  if (misuse_ == earlier) valid_photo_ = photo;
  return passed;
}

lumvik_host_settings* CallArguments::TakeSettings(int if_null) {
  if (parent_ != nullptr) {
    has_handle_ = true;
    return parent_->settings;
  }
  if (Takes("null settings", if_null)) return nullptr;
  return Passed(CreateSettings(), lumvik_host_settings_close, OpenSmallPhotograph, lumvik_host_close);
}

lumvik_host_photo* CallArguments::Photo() {
  return TakePhoto(false, LUMVIK_HOST_INVALID_HANDLE);
}

lumvik_host_photo* CallArguments::PhotoWithMask() {
  return TakePhoto(true, LUMVIK_HOST_INVALID_HANDLE);
}

lumvik_host_photo* CallArguments::PhotoToClose() {
  return TakePhoto(false, LUMVIK_HOST_OK);
}

lumvik_host_settings* CallArguments::Settings() {
  return TakeSettings(LUMVIK_HOST_INVALID_HANDLE);
}

lumvik_host_settings* CallArguments::SettingsOrNull() {
  return TakeSettings(LUMVIK_HOST_OK);
}

const char* CallArguments::Text(const char* valid, std::initializer_list<const char*> invalid) {
  if (Takes("a null text", LUMVIK_HOST_INVALID_ARGUMENT)) return nullptr;
  for (const char* const text : invalid) {
    if (Takes("the text '" + std::string(text) + "'", LUMVIK_HOST_INVALID_ARGUMENT)) return text;
  }
  return valid;
}

const char* CallArguments::Key(const char* valid, const char* of_another_kind) {
  if (Takes("a long key", LUMVIK_HOST_INVALID_ARGUMENT)) return Kept(std::string(kVeryLong, 'k'));
  return Text(valid, {"", "exposures", "\xFF", of_another_kind});
}

std::string CallArguments::File(const std::string& name, const std::string& content) {
  std::string path = lumvik::test::WriteBytes(Path(name), {content.begin(), content.end()});
  files_before_ = Files();
  return path;
}

const char* CallArguments::InputFile(const std::string& valid) {
  if (Takes("a null path", LUMVIK_HOST_INVALID_ARGUMENT)) return nullptr;
  if (Takes("an empty path", kAnyFailure)) return "";
  if (Takes("a missing file", LUMVIK_HOST_NOT_FOUND)) return Kept(Path("missing.png"));
  if (Takes("a folder", LUMVIK_HOST_INVALID_ARGUMENT)) return Kept(folder_.path().u8string());
  if (Takes("a long path", kAnyFailure)) return Kept(std::string(kVeryLong, 'p'));
  if (Takes("a path that is not UTF-8", kAnyFailure))
    return Kept(folder_.path().u8string() + "/\xFF\xFE.png");
  return Kept(valid);
}

const char* CallArguments::InputFolder() {
  if (Takes("a missing folder", LUMVIK_HOST_NOT_FOUND)) return Kept(Path("missing"));
  return Folder();
}

const char* CallArguments::OutputFile(const std::string& name) {
  if (Takes("a null path", LUMVIK_HOST_INVALID_ARGUMENT)) return nullptr;
  if (Takes("an empty path", kAnyFailure)) return "";
  if (Takes("a missing folder", LUMVIK_HOST_NOT_FOUND)) return Kept(Path("missing/" + name));
  if (Takes("a folder", LUMVIK_HOST_INVALID_ARGUMENT)) {
    std::filesystem::create_directory(folder_.path() / name);
    files_before_ = Files();
    return Kept(Path(name));
  }
  if (Takes("an existing file", LUMVIK_HOST_EXISTS)) {
    return Kept(File(name, "earlier"));
  }
  if (Takes("a long path", kAnyFailure)) return Kept(Path(std::string(kVeryLong, 'p') + name));
  return Kept(Path(name));
}

const void* CallArguments::Data(const std::string& valid) {
  return Takes("null data", LUMVIK_HOST_INVALID_ARGUMENT) ? nullptr : Kept(valid);
}

int32_t CallArguments::Integer(int32_t valid, std::initializer_list<int32_t> invalid) {
  for (const int32_t number : invalid) {
    if (Takes("the number " + std::to_string(number), LUMVIK_HOST_INVALID_ARGUMENT)) return number;
  }
  return valid;
}

std::size_t CallArguments::Size(std::size_t valid, std::initializer_list<std::size_t> invalid) {
  for (const std::size_t size : invalid) {
    if (Takes("the size " + std::to_string(size), LUMVIK_HOST_INVALID_ARGUMENT)) return size;
  }
  return valid;
}

std::size_t CallArguments::Capacity(std::size_t valid) {
  if (Takes("a buffer of no bytes", LUMVIK_HOST_BUFFER_TOO_SMALL)) return 0;
  if (Takes("a buffer too small by 1", LUMVIK_HOST_BUFFER_TOO_SMALL)) return valid - 1;
  return valid;
}

float CallArguments::Number(float valid, std::initializer_list<float> invalid) {
  using Float = std::numeric_limits<float>;
  for (const float number : {Float::quiet_NaN(), Float::infinity(), -Float::infinity()}) {
    if (Takes("the number " + std::to_string(number), LUMVIK_HOST_INVALID_ARGUMENT)) return number;
  }
  for (const float number : invalid) {
    if (Takes("the number " + std::to_string(number), LUMVIK_HOST_INVALID_ARGUMENT)) return number;
  }
  return valid;
}

uint32_t CallArguments::StructSize(std::size_t valid) {
  if (Takes("struct_size 0", LUMVIK_HOST_INVALID_ARGUMENT)) return 0;
  if (Takes("a small struct_size", LUMVIK_HOST_INVALID_ARGUMENT)) return static_cast<uint32_t>(valid - 1);
  if (Takes("a large struct_size", LUMVIK_HOST_OK)) return std::numeric_limits<uint32_t>::max();
  return static_cast<uint32_t>(valid);
}

lumvik_host_photo** CallArguments::OutPhoto() {
  auto** const out = Out<lumvik_host_photo*>();
  if (out != nullptr) releases_.emplace_back([out] { lumvik_host_close(*out); });
  return out;
}

lumvik_host_settings** CallArguments::OutSettings() {
  auto** const out = Out<lumvik_host_settings*>();
  if (out != nullptr) releases_.emplace_back([out] { lumvik_host_settings_close(*out); });
  return out;
}

void* CallArguments::Reserve(const void* initial, std::size_t size, WrittenOn written) {
  std::vector<std::byte> bytes(size + 2 * kCanaries, kUntouched);
  std::byte* const usable = bytes.data() + kCanaries;
  if (initial != nullptr) std::memcpy(usable, initial, size);
  std::vector<std::byte> before = bytes;
  blocks_.push_back({std::move(bytes), std::move(before), written});
  return usable;
}

std::string CallArguments::Files() const {
  std::set<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
    files.insert(entry.path().filename().u8string() +
                 (entry.is_directory() ? "/" : " " + std::to_string(entry.file_size())));
  }
  std::string text;
  for (const std::string& file : files) text += file + '\n';
  return text;
}

std::string CallArguments::Damage(int status) {
  const auto may_be_written = [status](const Block& block) {
    return status == LUMVIK_HOST_OK ||
           (block.written == WrittenOn::kBufferTooSmall && status == LUMVIK_HOST_BUFFER_TOO_SMALL) ||
           (block.written == WrittenOn::kDamaged && status == LUMVIK_HOST_DAMAGED);
  };
  for (const Block& block : blocks_) {
    const auto end = block.bytes.end() - kCanaries;
    const auto untouched = [](std::byte byte) { return byte == kUntouched; };
    if (!std::all_of(block.bytes.begin(), block.bytes.begin() + kCanaries, untouched) ||
        !std::all_of(end, block.bytes.end(), untouched)) {
      return "writes beyond an output";
    }
    if (!may_be_written(block) && block.bytes != block.before) return "writes an output although it fails";
  }
  if (status == LUMVIK_HOST_OK) {
    for (const auto& release : releases_) release();
    return "";
  }
  if (Files() != files_before_) return "changes files:\n" + Files();
  for (const auto& is_as_before : before_) {
    if (!is_as_before()) return "changes an object although it fails";
  }
  return "";
}

}  // namespace lumvik::host::test
