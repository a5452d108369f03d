// The arguments of a call of the interface, valid or misused one at a time.
#ifndef LUMVIK_TESTS_HOST_API_CALL_ARGUMENTS_H_
#define LUMVIK_TESTS_HOST_API_CALL_ARGUMENTS_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {

// A failure whose status depends on the system.
inline constexpr int kAnyFailure = -1;

// The failures after which an output may have been written.
enum class WrittenOn { kSuccess, kBufferTooSmall, kDamaged };

// Handles for calls in a child of the process that opened them.
struct HandlesOfParent {
  lumvik_host_photo* photo;
  lumvik_host_settings* settings;
};

// Variation 0 is valid. Each further one misuses one argument in one way; they are counted in the order in
// which the call takes its arguments. Memory and objects live as long as this.
class CallArguments {
 public:
  explicit CallArguments(int variation, const HandlesOfParent* parent = nullptr);
  ~CallArguments();
  CallArguments(const CallArguments&) = delete;
  CallArguments& operator=(const CallArguments&) = delete;

  lumvik_host_photo* Photo();
  lumvik_host_photo* PhotoWithMask();
  lumvik_host_photo* PhotoToClose();  // closing null is valid
  lumvik_host_settings* Settings();
  lumvik_host_settings* SettingsOrNull();  // also to close

  const char* Text(const char* valid, std::initializer_list<const char*> invalid = {});
  const char* Key(const char* valid, const char* of_another_kind);
  const char* InputFile(const std::string& valid);
  const char* InputFolder();
  const char* OutputFile(const std::string& name);
  const void* Data(const std::string& valid);
  // A file that is there before the call. Returns its path.
  std::string File(const std::string& name, const std::string& content);
  // The folder of these files.
  const char* Folder() { return Kept(folder_.path().u8string()); }

  int32_t Integer(int32_t valid, std::initializer_list<int32_t> invalid);
  std::size_t Size(std::size_t valid, std::initializer_list<std::size_t> invalid);
  std::size_t Capacity(std::size_t valid);
  float Number(float valid, std::initializer_list<float> invalid);  // and all that is not finite

  // Memory for `count` results, with canaries around.
  template <typename Result>
  Result* Out(WrittenOn written = WrittenOn::kSuccess, std::size_t count = 1) {
    if (Takes("no output", LUMVIK_HOST_INVALID_ARGUMENT)) return nullptr;
    return static_cast<Result*>(Reserve(nullptr, count * sizeof(Result), written));
  }
  template <typename Result>
  Result* OutOrNull(WrittenOn written = WrittenOn::kSuccess) {
    if (Takes("no optional output", LUMVIK_HOST_OK)) return nullptr;
    return static_cast<Result*>(Reserve(nullptr, sizeof(Result), written));
  }
  template <typename Result>
  Result* OutStruct(WrittenOn written = WrittenOn::kSuccess) {
    if (Takes("no output", LUMVIK_HOST_INVALID_ARGUMENT)) return nullptr;
    Result result{};
    result.struct_size = StructSize(sizeof(Result));
    return static_cast<Result*>(Reserve(&result, sizeof(Result), written));
  }

  // Pointers to what the caller must release.
  char** OutText() { return Released(Out<char*>()); }
  char** OutTextOrNull() { return Released(OutOrNull<char*>()); }
  uint8_t** OutData() { return Released(Out<uint8_t*>()); }
  lumvik_host_photo** OutPhoto();
  lumvik_host_settings** OutSettings();

  template <typename Options>
  const Options* In(Options options) {
    options.struct_size = StructSize(sizeof(Options));
    return static_cast<const Options*>(Reserve(&options, sizeof(Options), WrittenOn::kSuccess));
  }
  template <typename Options>
  const Options* InOrNull(const Options& options) {
    return Takes("no options", LUMVIK_HOST_OK) ? nullptr : In(options);
  }

  // Whether an argument is misused in this way, which must give `expected`.
  bool Takes(const std::string& misuse, int expected);

  // The misuse that a call took; "" if none.
  const std::string& Misuse() const { return misuse_; }
  int Expected() const { return expected_; }
  bool HasHandle() const { return has_handle_; }
  // The photo that a call took, unless its handle was misused.
  lumvik_host_photo* ValidPhoto() const { return valid_photo_; }

  // After the call: what it wrote that it must not write, and what it changed although it failed; "" if
  // nothing.
  std::string Damage(int status);

 private:
  struct Block {
    std::vector<std::byte> bytes;  // with the canaries
    std::vector<std::byte> before;
    WrittenOn written;
  };

  void* Reserve(const void* initial, std::size_t size, WrittenOn written);
  uint32_t StructSize(std::size_t valid);
  template <typename Handle, typename OtherHandle>
  Handle* Passed(Handle* handle, lumvik_host_status (*close)(Handle*), OtherHandle* (*open_other)(),
                 lumvik_host_status (*close_other)(OtherHandle*));
  template <typename Pointer>
  Pointer** Released(Pointer** out) {
    if (out != nullptr) {
      releases_.emplace_back([out] { lumvik_host_free(*out); });
    }
    return out;
  }
  lumvik_host_photo* TakePhoto(bool with_mask, int if_null);
  lumvik_host_settings* TakeSettings(int if_null);
  const char* Kept(std::string text) { return texts_.emplace_back(std::move(text)).c_str(); }
  std::string Path(const std::string& name) const { return folder_.File(name); }
  std::string Files() const;

  int countdown_;
  const HandlesOfParent* parent_;
  std::string misuse_;
  int expected_ = LUMVIK_HOST_OK;
  bool has_handle_ = false;
  lumvik_host_photo* valid_photo_ = nullptr;
  lumvik::test::TempDir folder_;
  std::string files_before_;
  std::deque<Block> blocks_;
  std::deque<std::string> texts_;
  std::vector<std::function<void()>> releases_;  // of the results of a success
  std::vector<std::function<void()>> closes_;
  std::vector<std::function<bool()>> before_;  // whether the objects are as before
};

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_API_CALL_ARGUMENTS_H_
