// The walk through the string table of an executable file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/TrojanDetect.h"
#include "forms/Controls.h"
#include "platform/EventLoop.h"
#include "platform/ResourceModules.h"

namespace tallowin::analysis {

/// Where the texts are shown: rows of an id, a text and how suspicious it is.
class StringRows {
 public:
  virtual ~StringRows() = default;
  virtual void Clear() = 0;
  virtual void Add(const std::string& id, const std::string& text) = 0;
  /// Of the row added last.
  virtual void SetSuspicion(const std::string& suspicion) = 0;
};

/// Finds the texts by way of two working lists: the types of the file's resources, and the names of
/// those of the type that is selected. Nothing is reported where there is nothing to find.
class ResourceStrings {
 public:
  /// Takes the click of `types`.
  ResourceStrings(platform::ResourceModules& modules, TrojanDetect& detect,
                  platform::EventLoop& loop, forms::ListBox& types, forms::ListBox& names,
                  StringRows& rows);

  /// The ids are those of this program: a bundle is asked for ids one higher than it holds, so that
  /// its first text is found only where the bundle before it exists. The message loop runs once,
  /// and again with each row.
  void ExtractStringTable(std::string_view path);

  /// The scan that runs, if one does, adds no more to its rows.
  void Stop();
  /// The rows and both lists; this is the end of a scan, too.
  void Clear();

  /// Fills lstnames for the type that is selected, while a file is open.
  void ListResourceNames();

 private:
  void EnumTypeProc(const platform::ResourceId& type);
  void EnumNameProc(const platform::ResourceId& name);
  void SelectStringTypes();
  void ShowBundle(const std::string& name);
  void ShowString(std::int32_t id);

  platform::ResourceModules& modules_;
  TrojanDetect& detect_;
  platform::EventLoop& loop_;
  forms::ListBox& LstTypes_;
  forms::ListBox& lstnames_;
  StringRows& rows_;
  std::unique_ptr<platform::ResourceModule> module_;
  std::vector<platform::ResourceId> types_;  ///< what the entries of LstTypes stand for
  std::uint64_t scan_ = 0;                   ///< counts scans, and ends of them
};

}  // namespace tallowin::analysis
