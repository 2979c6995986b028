// The window of the process manager.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"
#include "forms/ListView.h"

namespace tallowin::analysis {

/// Controls only. What they do is in analysis/ProcessManager.h. What is called a thread here is a
/// module of the process: its program or a library.
class ProcessManFrm : public forms::Form {
 public:
  ProcessManFrm() : Form("ProcessManFrm") { SetCaption("Process Manager"); }

  forms::ToolBar Toolbar1{*this,
                          "Toolbar1",
                          {{"refresh", "Refresh"},
                           {"scan", "Scan for Virii"},
                           {"terminate", "Terminate Process"},
                           {"terminateanddel", "Terminate Process and Delete File"},
                           {"copy", "Copy To Log"}}};
  forms::Frame Frame1{*this, "Frame1", "Running Processes"};
  forms::ListView ProcView1{
      Frame1, "ProcView1", {"Process", "PID", "Base Priority", "Suspicion", "Virii Found"}};
  forms::Frame Frame2{*this, "Frame2", "Threads"};
  forms::ListView ThreadsView1{
      Frame2, "ThreadsView1", {"Thread", "TID", "Suspicion", "Virii Found"}};
  forms::CheckBox ChkScanProcs{*this, "ChkScanProcs", "Scan Processes For Virii"};
  forms::CheckBox ChkScanThreads{*this, "ChkScanThreads", "Scan Threads For Virii"};
};

}  // namespace tallowin::analysis
