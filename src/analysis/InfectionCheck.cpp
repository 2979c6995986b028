#include "analysis/InfectionCheck.h"

#include <chrono>
#include <fstream>

#include "analysis/CRC32.h"
#include "core/TestPrograms.h"
#include "platform/RunTimeError.h"

namespace tallowin::analysis {
namespace {

constexpr std::int32_t kWait = 10000;
constexpr std::chrono::milliseconds kRetry{100};

[[noreturn]] void ThrowAccessError() {
  throw platform::RunTimeError(platform::error::kPathFileAccess, "Path/File access error");
}

/// A free name in the root of drive C, up to and with the point in front of the extension.
std::string FreeBase(core::MiscRoutines& misc) {
  constexpr std::size_t kExtension = 3;
  std::string name = misc.MakeTempFileName();
  if (name.size() <= kExtension) ThrowAccessError();
  name.resize(name.size() - kExtension);
  return name;
}

/// As one printed line: the line end is part of the file, and of its checksum.
void WriteProgram(const std::string& path, const std::string& base64) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << core::Base64Decode(base64) << "\r\n";
  file.close();
  if (!file) ThrowAccessError();
}

}  // namespace

InfectionCheck::InfectionCheck(core::MainForm& mainForm, core::MiscRoutines& misc,
                               ReadFile& readFile, platform::Files& files, core::StatusLog& log,
                               platform::EventLoop& loop)
    : mainForm_(mainForm),
      misc_(misc),
      readFile_(readFile),
      files_(files),
      log_(log),
      loop_(loop),
      retry_(loop.MakeTimer(kRetry, [this] { Wait(); })) {}

void InfectionCheck::ExeInfectChk_Click() {
  loop_.Post([this] { Run(); });
}

void InfectionCheck::Run() {
  // A run that came between the log lines of another would hold that one up for good.
  if (writing_) return ExeInfectChk_Click();
  waiting_.push_back(WritePair());
  // One wait stands for all: a further one upon it would hold up nothing more than the first one
  // does, and the stack would not bear many of them.
  if (waiting_.size() == 1) Wait();
}

void InfectionCheck::Wait() {
  // Below it, a question or what is done for a caller would never come to its end.
  retry_->SetEnabled(loop_.Nested());
  if (loop_.Nested()) return;
  misc_.WaitForMilliseconds(kWait);
  while (!waiting_.empty()) {
    const std::string newest = std::move(waiting_.back());
    waiting_.pop_back();
    Compare(newest);
  }
}

std::string InfectionCheck::WritePair() {
  struct Writing {
    explicit Writing(bool& flag) : writing(flag) { writing = true; }
    ~Writing() { writing = false; }
    bool& writing;
  } const guard(writing_);
  log_.LogStatus("Creating EXE/COM Files With Known Checksum", true);
  std::string base = FreeBase(misc_);
  WriteProgram(base + "com", mainForm_.Testcom.Text());
  WriteProgram(base + "exe", mainForm_.TestEXE.Text());
  log_.LogStatus("Waiting 10 Seconds For Infection...", true);
  return base;
}

void InfectionCheck::Compare(const std::string& base) {
  Report(base + "exe", "EXE", core::kTestExeChecksum);
  Report(base + "com", "COM", core::kTestComChecksum);
  files_.Delete(base + "exe");
  files_.Delete(base + "com");
}

void InfectionCheck::Report(const std::string& path, const char* kind, std::string_view expected) {
  const std::string actual = Crc32Text(Crc32OfBytes(readFile_.ReadFileAsBytes(path).Text()));
  const char* verdict = actual == expected ? "not modified" : "modified, this could be a virus";
  log_.LogStatus(std::string("The ") + kind + " file was " + verdict, true);
}

}  // namespace tallowin::analysis
