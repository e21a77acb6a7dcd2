// Takes the library's messages off standard output: while a capture lives, file descriptor 1 leads into a
// pipe, and a thread hands every complete line to a receiver.
#ifndef TORNWALZEN_APP_OUTPUT_CAPTURE_HPP
#define TORNWALZEN_APP_OUTPUT_CAPTURE_HPP

#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace host {

class OutputCapture {
 public:
  // receive(line): called on the capture's own thread with each line, without its line end. It must not
  // throw. Throws Failure if the system gives no pipe.
  explicit OutputCapture(std::function<void(std::string_view)> receive);
  // Gives descriptor 1 back; all lines have been received afterwards.
  ~OutputCapture();
  OutputCapture(const OutputCapture&) = delete;
  OutputCapture& operator=(const OutputCapture&) = delete;

 private:
  void readLines(int source);
  std::function<void(std::string_view)> receive_;
  int screen_ = -1;
  std::thread reader_;
};

}  // namespace host

#endif
