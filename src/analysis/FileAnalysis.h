// What StringExtractFrm does.
#pragma once

#include <cstddef>
#include <optional>

#include "analysis/FileReport.h"
#include "analysis/ResourceStrings.h"
#include "analysis/StringExtractFrm.h"
#include "core/MiscRoutines.h"
#include "forms/Questions.h"
#include "platform/EventLoop.h"

namespace tallowin::analysis {

/// Takes the clicks of the form. Nothing is reported: what cannot be had stays empty.
class FileAnalysis {
 public:
  struct Parts {
    FileReport::Host host;
    platform::ResourceModules& modules;
    const core::MiscRoutines& misc;
    ReadFile& readFile;
    TrojanDetect& detect;
    platform::EventLoop& loop;
    forms::Questions& questions;
  };
  FileAnalysis(const Parts& parts, StringExtractFrm& form);

  /// Shows the form, empty, and returns when it is closed.
  void Show();

 private:
  /// The rows of VersionInfoView.
  class Properties : public PropertyRows {
   public:
    explicit Properties(StringExtractFrm& form) : form_(form) {}
    void ShowIcon(const platform::FileIcon& icon) override;
    void Clear() override;
    void Add(const std::string& property) override;
    void SetValue(const std::string& value) override;

   private:
    StringExtractFrm& form_;
    std::optional<std::size_t> row_;  ///< added last
  };
  /// The rows of StringTableView.
  class Strings : public StringRows {
   public:
    explicit Strings(forms::ListView& view) : view_(view) {}
    void Clear() override;
    void Add(const std::string& id, const std::string& text) override;
    void SetSuspicion(const std::string& suspicion) override;

   private:
    forms::ListView& view_;
    std::optional<std::size_t> row_;  ///< added last
  };

  void Empty();
  void Abandon();
  void Command1_Click();
  void Command2_Click();

  StringExtractFrm& form_;
  const core::MiscRoutines& misc_;
  platform::EventLoop& loop_;
  forms::Questions& questions_;
  Properties properties_;
  Strings strings_;
  FileReport report_;
  ResourceStrings resourceStrings_;
  std::string dialogFileName_;  ///< what the file dialog holds
  forms::Observation whenHidden_;
};

}  // namespace tallowin::analysis
