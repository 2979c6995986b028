#include "platform/linux/CrontabProgram.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>

namespace tallowin::platform::linux_host {
namespace {

constexpr int kPatience = 2000;
constexpr qsizetype kLongestOutput = qsizetype{4} << 20U;

/// False if there is no such program. It is looked for here, as QProcess leaves the end of a pipe
/// open each time that it starts one in vain.
bool Start(QProcess& program, const std::vector<std::string>& command, const char* argument) {
  if (command.empty()) return false;
  const QString path = QStandardPaths::findExecutable(QFile::decodeName(command.front().c_str()));
  if (path.isEmpty()) return false;
  QStringList arguments;
  for (std::size_t i = 1; i < command.size(); ++i) {
    arguments.append(QFile::decodeName(command[i].c_str()));
  }
  arguments.append(QString::fromLatin1(argument));
  program.setStandardErrorFile(QProcess::nullDevice());
  program.start(path, arguments);
  return true;
}

/// A program that has not ended in time is ended: its answer could not be told from half of one.
bool EndsInTime(QProcess& program, QByteArray& output) {
  QElapsedTimer clock;
  clock.start();
  while (program.state() != QProcess::NotRunning) {
    const qint64 left = kPatience - clock.elapsed();
    if (left <= 0 || output.size() > kLongestOutput) {
      program.kill();
      program.waitForFinished(kPatience);
      return false;
    }
    // It may have closed its output and go on.
    if (!program.waitForReadyRead(static_cast<int>(left))) {
      program.waitForFinished(static_cast<int>(std::max<qint64>(kPatience - clock.elapsed(), 0)));
    }
    output += program.readAllStandardOutput();
  }
  output += program.readAllStandardOutput();
  return program.error() != QProcess::FailedToStart && program.exitStatus() == QProcess::NormalExit;
}

}  // namespace

bool CrontabProgram::List(std::string& table) const {
  QProcess program;
  program.setStandardInputFile(QProcess::nullDevice());
  QByteArray output;
  if (!Start(program, command_, "-l") || !EndsInTime(program, output)) return false;
  table = program.exitCode() == 0 ? output.toStdString() : std::string();
  return true;
}

bool CrontabProgram::Install(std::string_view table) const {
  QProcess program;
  if (!Start(program, command_, "-")) return false;
  program.write(table.data(), static_cast<qint64>(table.size()));
  program.closeWriteChannel();
  QByteArray output;
  return EndsInTime(program, output) && program.exitCode() == 0;
}

}  // namespace tallowin::platform::linux_host
