// The hidden file beside a document that has its new text while the document is replaced:
// ".pq_config.json.saving" beside "pq_config.json".
#ifndef DOCUMENTS_SIDE_FILE_H_
#define DOCUMENTS_SIDE_FILE_H_

#include <string>

namespace pq {

class SideFile {
 public:
  // Looks for the side file. A folder of that name cannot be replaced by a file; then ".saving.2"
  // is the side file's name. Throws std::bad_alloc.
  explicit SideFile(const char* document);

  // True if there is anything of that name, a link that leads nowhere included. False also when the
  // name could not be looked up.
  [[nodiscard]] bool exists() const { return exists_; }

  // errno's number when the name could not be looked up; else 0.
  [[nodiscard]] int error() const { return error_; }

  [[nodiscard]] const char* path() const { return path_.c_str(); }

  // Replaces the side file by one with this text, and waits until the disk has both the text and
  // the name. Returns false after an error line; then there is no side file. Allocates nothing.
  [[nodiscard]] bool write(const char* text);

  void remove();

 private:
  void look_up();

  std::string folder_;  // with the slash at its end
  std::string path_;
  bool exists_ = false;
  bool is_folder_ = false;
  int error_ = 0;
};

}  // namespace pq

#endif  // DOCUMENTS_SIDE_FILE_H_
