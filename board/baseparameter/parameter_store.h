// The files behind the simulated base-parameter library:
//   version                           "2 0"
//   pq_tuning_info, pq_sharp_info, aipq_info      the raw records
//   <type code>-<index>/brightness, contrast, saturation, hue    decimal text
//   <type code>-<index>/cubic_lut     the raw record
// Type code and index as in baseparameter_api.h. Any thread of any process may call.
#ifndef BOARD_BASEPARAMETER_PARAMETER_STORE_H_
#define BOARD_BASEPARAMETER_PARAMETER_STORE_H_

#include <baseparameter_api.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace board {

struct PanelDefaults;

class ParameterStore {
 public:
  // folder: "baseparameter" in the board's folder.
  explicit ParameterStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // Fills an empty store with what a board leaves the factory with. Throws std::runtime_error.
  void seed(const PanelDefaults& defaults) const;

  [[nodiscard]] std::optional<std::pair<uint16_t, uint16_t>> version() const;

  // Fills `record` from a file of exactly its size. Else the result is negative (-ENOENT, -EIO) and
  // the record stays as it was.
  [[nodiscard]] int read_record(std::string_view name, std::span<std::byte> record) const;

  // The values of one connector. Return 0 or a negative errno.
  [[nodiscard]] int set_value(unsigned int type, unsigned int index, std::string_view name,
                              uint16_t value) const;
  [[nodiscard]] int set_cubic_lut(unsigned int type, unsigned int index,
                                  const cubic_lut_data& lut) const;

 private:
  [[nodiscard]] std::filesystem::path connector_folder(unsigned int type, unsigned int index) const;

  std::filesystem::path folder_;
};

}  // namespace board

#endif  // BOARD_BASEPARAMETER_PARAMETER_STORE_H_
