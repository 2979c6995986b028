// The form for complaints to a caller's provider.
#pragma once

#include "forms/Controls.h"
#include "forms/Form.h"

namespace tallowin::reporting {

/// Stays as it is while it is hidden. What it does beyond its own controls is in HackerReport.h.
class ReportHacker : public forms::Form {
 public:
  /// Where the mouse is over `emaillist`, and what the list looks like: lengths in twips, 1440 to
  /// the inch, the font's size in points, and the first entry on show.
  struct MouseOverList {
    double x;
    double y;
    double listWidth;
    double listHeight;
    double fontSize;
    std::size_t topIndex;
  };

  ReportHacker();

  /// The sender and the message from the name and the address. What was typed into the message is
  /// gone with it.
  void UpdatePreview();

  /// The list's tool tip becomes the entry under the mouse, whose row is estimated from the font.
  /// Near the edges it stays as it was.
  void emaillist_MouseMove(const MouseOverList& mouse);

  forms::Label Label1{*this, "Label1", "Step 1: Select e-mail addresses to send report to:"};
  forms::Label Label2{*this, "Label2",
                      "These e-mail addresses were automatically extracted from whois results"};
  forms::ListBox emaillist{*this, "emaillist", forms::ListBox::Selection::Several};
  forms::Label Label3{*this, "Label3", "Step 2: Enter any additional addresses manually:"};
  forms::Label Label4{*this, "Label4",
                      "This is the finalised list of e-mails the report will be sent to, you can "
                      "add more e-mails to this list manually if you wish (1 address per line)."};
  forms::TextBox totxt{*this, "totxt", {.multiLine = true}};
  forms::Label Label5{*this, "Label5", "Step 3: Enter your details:"};
  forms::Label Label6{*this, "Label6",
                      "If these details are incorrect please modify them. Your details were taken "
                      "from the options dialog."};
  forms::Label Label7{*this, "Label7", "Name:"};
  forms::TextBox fromname{*this, "fromname", {}};
  forms::Label Label8{*this, "Label8", "E-Mail:"};
  forms::TextBox fromemail{*this, "fromemail", {}};
  forms::Label Label9{*this, "Label9", "Step 4: Finalise settings:"};
  forms::Label Label10{*this, "Label10",
                       "Below is an example of how your message will look, after checking the "
                       "details you have entered, click send."};
  forms::Label Label11{*this, "Label11", "From:"};
  forms::TextBox fromtxt{*this, "fromtxt", {}};
  forms::Label Label12{*this, "Label12", "Subject:"};
  forms::TextBox subjecttxt{*this, "subjecttxt", {.text = "Hacking attempt made on my machine."}};
  forms::Label Label13{*this, "Label13", "Message:"};
  forms::TextBox bodytxt{
      *this, "bodytxt", {.text = "Filled in from other txt box\r\n", .multiLine = true}};
  forms::Label Label14{*this, "Label14",
                       "Your current log will automatically be attached to the email."};
  forms::Button Command1{*this, "Command1", "Send"};
  forms::Button Command2{*this, "Command2", "Cancel"};
  /// The fixed part of the message; never seen.
  forms::TextBox defaultmsg;

 private:
  void emaillist_Click();
};

}  // namespace tallowin::reporting
