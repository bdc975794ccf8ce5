#include "window/setup/setup_page.h"

#include <QScrollArea>
#include <QVBoxLayout>

#include "window/dialogs/dialog_parts.h"
#include "window/setup/setup_look.h"

namespace orma {

FormPage::FormPage(const SetupContext& context, SetupFields rows)
    : form_(new SetupForm(context.document, rows, context.choices, context.edited)) {
    auto* contents = new QWidget;
    auto* column = new QVBoxLayout(contents);
    column->setContentsMargins(2, 2, kDialogMargin, kDialogGap);
    column->addWidget(form_);
    column->addStretch(1);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->addWidget(Scrolling(contents));
}

}  // namespace orma
