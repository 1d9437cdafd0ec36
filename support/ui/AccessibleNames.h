// Names for screen readers. Qt names an edit after the label whose buddy it is, but not a list, a table
// or a text box: for those a screen reader hears nothing but "list". A form calls this once its controls
// are built. GUI thread; nothing is owned.
#pragma once

class QWidget;

// Every control that is a label's buddy and has no accessible name of its own gets the label's text,
// without its mnemonic mark and closing colon ("&Visible fields" -> "Visible fields").
void NameBuddiesAfterTheirLabels(QWidget* Form);
