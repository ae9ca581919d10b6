#include "kit/controls/ToolbarDialog.h"

#include "kit/common/SpokenText.h"
#include "kit/common/WindowScale.h"

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace discaro::kit {

namespace {

constexpr int kListWidth = 210;
constexpr int kListHeight = 260;

QListWidget* makeList(const char* name) {
    auto* list = new QListWidget;
    list->setObjectName(QString::fromLatin1(name));
    list->setMinimumSize(scaledLength(kListWidth), scaledLength(kListHeight));
    const int icon = scaledLength(16);
    list->setIconSize(QSize(icon, icon));
    return list;
}

// Keeps a text in line with those that have a picture.
QIcon emptyIcon(const QSize& size) {
    QPixmap empty(size);
    empty.fill(Qt::transparent);
    return QIcon(empty);
}

QLabel* makeLabel(const QString& text, QListWidget* list) {
    auto* label = new QLabel(text);
    label->setBuddy(list);
    list->setAccessibleName(spokenForm(text));
    return label;
}

QPushButton* makeButton(const char* name, const QString& text) {
    auto* button = new QPushButton(text);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

} // namespace

ToolbarDialog::ToolbarDialog(Toolbar& toolbar)
    : QDialog(toolbar.window())
    , available(makeList("available"))
    , present(makeList("present"))
    , add(makeButton("add", tr("&Add →")))
    , remove(makeButton("remove", tr("← &Remove")))
    , moveUp(makeButton("moveUp", tr("Move &Up")))
    , moveDown(makeButton("moveDown", tr("Move &Down")))
    , reset(makeButton("reset", tr("R&eset")))
    , m_toolbar(toolbar) {
    setWindowTitle(tr("Customize Toolbar"));
    setObjectName("CustomizeToolbar");
    build();
    connect(add, &QPushButton::clicked, this, &ToolbarDialog::addChosen);
    connect(remove, &QPushButton::clicked, this, &ToolbarDialog::removeChosen);
    connect(moveUp, &QPushButton::clicked, this, [this] { moveChosen(-1); });
    connect(moveDown, &QPushButton::clicked, this, [this] { moveChosen(1); });
    connect(reset, &QPushButton::clicked, this, [this] { apply(m_toolbar.declaredArrangement(), 0); });
    connect(available, &QListWidget::itemDoubleClicked, this, &ToolbarDialog::addChosen);
    connect(present, &QListWidget::itemDoubleClicked, this, &ToolbarDialog::removeChosen);
    connect(available, &QListWidget::currentRowChanged, this, &ToolbarDialog::enableButtons);
    connect(present, &QListWidget::currentRowChanged, this, &ToolbarDialog::enableButtons);
    showArrangement(0);
}

void ToolbarDialog::build() {
    auto* close = makeButton("close", tr("&Close"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto* grid = new QGridLayout(this);
    grid->addWidget(makeLabel(tr("A&vailable buttons:"), available), 0, 0);
    grid->addWidget(available, 1, 0, 5, 1);
    grid->addWidget(add, 2, 1);
    grid->addWidget(remove, 3, 1);
    grid->setRowStretch(1, 1);
    grid->setRowStretch(4, 1);
    grid->addWidget(makeLabel(tr("&Toolbar buttons:"), present), 0, 2);
    grid->addWidget(present, 1, 2, 5, 1);
    auto* right = new QVBoxLayout;
    right->addWidget(close);
    right->addWidget(reset);
    right->addStretch();
    right->addWidget(moveUp);
    right->addWidget(moveDown);
    grid->addLayout(right, 1, 3, 5, 1);
    QWidget* last = available;
    for (QWidget* next : std::initializer_list<QWidget*>{add, remove, present, moveUp, moveDown, reset, close}) {
        setTabOrder(last, next);
        last = next;
    }
}

QListWidgetItem* ToolbarDialog::entry(const QString& key) const {
    auto* made = new QListWidgetItem;
    made->setData(Qt::UserRole, key);
    if (key == Toolbar::kSeparator) {
        made->setText(tr("Separator"));
        made->setIcon(emptyIcon(present->iconSize()));
    } else {
        made->setText(m_toolbar.button(key).accessibleName());
        made->setIcon(m_toolbar.button(key).icon());
    }
    return made;
}

void ToolbarDialog::showArrangement(int chosen) {
    fillAvailable();
    present->clear();
    for (const QString& key : m_toolbar.arrangement())
        present->addItem(entry(key));
    present->setCurrentRow(std::clamp(chosen, -1, present->count() - 1));
    enableButtons();
}

void ToolbarDialog::fillAvailable() {
    const int row = std::max(available->currentRow(), 0);
    available->clear();
    available->addItem(entry(Toolbar::kSeparator));
    for (const QString& key : m_toolbar.declaredArrangement())
        if (key != Toolbar::kSeparator && !m_toolbar.arrangement().contains(key))
            available->addItem(entry(key));
    available->setCurrentRow(std::min(row, available->count() - 1));
}

void ToolbarDialog::apply(const QStringList& keys, int chosen) {
    m_toolbar.setArrangement(keys);
    showArrangement(chosen);
}

void ToolbarDialog::addChosen() {
    if (!available->currentItem())
        return;
    QStringList keys = m_toolbar.arrangement();
    const int place = present->currentRow() < 0 ? present->count() : present->currentRow();
    keys.insert(place, available->currentItem()->data(Qt::UserRole).toString());
    apply(keys, place + 1);
}

void ToolbarDialog::removeChosen() {
    const int place = present->currentRow();
    if (place < 0)
        return;
    QStringList keys = m_toolbar.arrangement();
    keys.removeAt(place);
    apply(keys, place);
}

void ToolbarDialog::moveChosen(int by) {
    const int place = present->currentRow();
    QStringList keys = m_toolbar.arrangement();
    if (place < 0 || place + by < 0 || place + by >= keys.size())
        return;
    keys.move(place, place + by);
    apply(keys, place + by);
}

void ToolbarDialog::enableButtons() {
    const int place = present->currentRow();
    add->setEnabled(available->currentItem() != nullptr);
    remove->setEnabled(place >= 0);
    moveUp->setEnabled(place > 0);
    moveDown->setEnabled(place >= 0 && place + 1 < present->count());
}

void Customize(Toolbar& toolbar) {
    ToolbarDialog(toolbar).exec();
}

} // namespace discaro::kit
