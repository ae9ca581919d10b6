#include "kit/form/BoundFields.h"

#include "base/RuntimeError.h"
#include "kit/common/Strings.h"
#include "kit/controls/Controls.h"
#include "kit/controls/TextBox.h"

#include <QtCore/QSignalBlocker>

#include <algorithm>
#include <utility>

namespace discaro::kit {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

QString shownText(const db::Value& value) {
    if (const auto* yes = std::get_if<bool>(&value))
        return *yes ? QStringLiteral("-1") : QStringLiteral("0");
    return qt(db::textOf(value));
}

bool holdsText(db::FieldType type) {
    return type == db::FieldType::Text || type == db::FieldType::LongText;
}

void assign(db::Field& field, const std::string& text) {
    const bool yesNo = field.Type() == db::FieldType::Boolean;
    if (text.empty() && !holdsText(field.Type()))
        field = nullptr;
    else if (yesNo && (text == "-1" || text == "0"))
        field = text != "0";
    else
        field = text;
}

bool isLineEndPair(const QString& text, qsizetype place) {
    return text[place] == u'\r' && place + 1 < text.size() && text[place + 1] == u'\n';
}

QChar boxCharacter(QChar each) {
    switch (each.unicode()) {
    case u'\r':
    case QChar::LineSeparator:
    case QChar::ParagraphSeparator:
    case 0xFDD0:
    case 0xFDD1:
        return u'\n';
    case QChar::Nbsp:
        return u' ';
    default:
        return each;
    }
}

// A text as a box with several lines gives it once it has been edited, but with plain line feeds.
QString boxForm(const QString& text) {
    QString form;
    form.reserve(text.size());
    for (qsizetype place = 0; place < text.size(); ++place) {
        place += isLineEndPair(text, place) ? 1 : 0;
        form += boxCharacter(text[place]);
    }
    return form;
}

// The place in a text that belongs to a place in its box form.
qsizetype placeInText(const QString& text, qsizetype formPlace) {
    qsizetype place = 0;
    for (; formPlace > 0; --formPlace)
        place += isLineEndPair(text, place) ? 2 : 1;
    return place;
}

qsizetype commonStart(const QString& left, const QString& right) {
    const auto* different = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first;
    return different - left.begin();
}

qsizetype commonEnd(const QString& left, const QString& right, qsizetype limit) {
    qsizetype length = 0;
    while (length < limit && left[left.size() - 1 - length] == right[right.size() - 1 - length])
        ++length;
    return length;
}

} // namespace

QString mendedText(const QString& stored, const QString& edited) {
    const QString before = boxForm(stored);
    const QString after = boxForm(edited);
    const qsizetype start = commonStart(before, after);
    const qsizetype end = commonEnd(before, after, std::min(before.size(), after.size()) - start);
    QString added = after.mid(start, after.size() - start - end);
    if (stored.contains(QStringLiteral("\r\n")) || !stored.contains(u'\n'))
        added.replace(u'\n', QStringLiteral("\r\n"));
    return stored.left(placeInText(stored, start)) + added + stored.mid(placeInText(stored, before.size() - end));
}

std::string BoundFields::Binding::value() const {
    const QString text = read();
    if (text == given)
        return utf8(stored);
    return utf8(mends ? mendedText(stored, text) : text);
}

BoundFields::BoundFields(QObject* parent)
    : QObject(parent) {}

BoundFields::~BoundFields() {
    detach();
}

void BoundFields::bind(TextBox& box, std::string_view field) {
    Binding binding;
    binding.control = &box;
    binding.mends = box.isMultiLine();
    binding.read = [&box] { return box.text(); };
    binding.give = [&box](const QString& text) {
        const QSignalBlocker quiet(&box);
        box.setText(text);
    };
    binding.notify = [&box] { emit box.Change(); };
    add(std::move(binding), field);
}

void BoundFields::bind(Label& label, std::string_view field) {
    Binding binding;
    binding.control = &label;
    binding.read = [&label] { return label.text(); };
    binding.give = [&label](const QString& text) {
        const QSignalBlocker quiet(&label);
        label.setText(text);
    };
    binding.notify = [&label] { emit label.Change(); };
    add(std::move(binding), field);
}

void BoundFields::follow(std::string_view field, std::function<void(const QString&)> give) {
    Binding binding;
    binding.give = std::move(give);
    add(std::move(binding), field);
}

void BoundFields::add(Binding binding, std::string_view field) {
    binding.field = field;
    if (binding.read)
        binding.given = binding.read();
    m_bindings.push_back(std::move(binding));
}

void BoundFields::attach(db::DataSource& source) {
    detach();
    m_source = &source;
    source.repositioned = [this] {
        if (m_holds == 0)
            showRow();
    };
    source.beforeUpdate = [this] { writeRow(); };
    showRow();
}

void BoundFields::detach() {
    if (!m_source)
        return;
    m_source->repositioned = nullptr;
    m_source->beforeUpdate = nullptr;
    m_source = nullptr;
    m_shownRow.reset();
}

const BoundFields::Binding& BoundFields::bindingOf(const QObject& control) const {
    const auto same = [&control](const Binding& each) { return each.control == &control; };
    const auto found = std::find_if(m_bindings.begin(), m_bindings.end(), same);
    if (found == m_bindings.end())
        throw RuntimeError(ErrorNumber::InvalidValue, "the control is bound to no field");
    return *found;
}

std::string BoundFields::text(const QObject& control) const {
    return bindingOf(control).value();
}

bool BoundFields::isTouched(const QObject& control) const {
    return bindingOf(control).isTouched();
}

bool BoundFields::isAnyTouched() const {
    return std::ranges::any_of(m_bindings, &Binding::isTouched);
}

std::optional<int64_t> BoundFields::currentRow() const {
    const db::Recordset& rows = m_source->Recordset();
    if (rows.Bof() || rows.Eof())
        return std::nullopt;
    return rows.RowNumber();
}

void BoundFields::showRow() {
    bool onRow = false;
    const std::vector<QString> texts = readRow(onRow);
    m_shownRow = currentRow();
    if (onRow)
        emit Reposition();
    std::vector<bool> changed;
    for (size_t each = 0; each < m_bindings.size(); ++each)
        changed.push_back(giveText(m_bindings[each], texts[each]));
    for (size_t each = 0; each < m_bindings.size(); ++each)
        if (changed[each] && m_bindings[each].notify)
            m_bindings[each].notify();
    emit RowShown();
}

// Reads everything before anything is shown, so that an error leaves the controls as they were.
std::vector<QString> BoundFields::readRow(bool& onRow) const {
    std::vector<QString> texts;
    try {
        for (const Binding& binding : m_bindings)
            texts.push_back(shownText(m_source->Recordset().Fields(binding.field).Value()));
        onRow = true;
    } catch (const RuntimeError& error) {
        if (!error.is(ErrorNumber::NoCurrentRecord) && !error.is(ErrorNumber::RecordGone))
            throw;
        texts.assign(m_bindings.size(), {});
    }
    return texts;
}

// Returns whether the control's text is another one now. A control that shows what it is to show
// already is left alone, with its caret and its scroll position.
bool BoundFields::giveText(Binding& binding, const QString& text) {
    if (!binding.read) {
        binding.give(text);
        return false;
    }
    const QString before = binding.read();
    const bool untouched = text == binding.stored && before == binding.given;
    const bool saved = text == binding.savedStored && before == binding.savedGiven;
    if (!untouched && !saved)
        binding.give(text);
    binding.stored = text;
    binding.given = binding.read();
    binding.savedStored.clear();
    binding.savedGiven.clear();
    return binding.given != before;
}

void BoundFields::writeRow() {
    db::Recordset& rows = m_source->Recordset();
    for (Binding& binding : m_bindings) {
        if (!binding.isTouched())
            continue;
        if (currentRow() != m_shownRow)
            throw RuntimeError(ErrorNumber::RecordGone);
        const std::string value = binding.value();
        assign(rows.Fields(binding.field), value);
        binding.savedStored = qt(value);
        binding.savedGiven = binding.read();
    }
}

} // namespace discaro::kit
