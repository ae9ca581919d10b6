#pragma once

#include "kit/controls/ControlArray.h"
#include "kit/controls/Controls.h"
#include "kit/controls/TextBox.h"
#include "kit/display/Picture.h"
#include "kit/form/Form.h"
#include "kit/form/Timer.h"
#include "kit/program/UnhandledErrors.h"

#include <concepts>
#include <functional>
#include <optional>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

// One row of a form table: a control with what is told of it. Windows use it through FormTable.h.
namespace discaro::kit {

// What can be told of a control of any class.
struct RowFacts {
    const char* name = "";
    int index = -1; // -1: no element of a control array
    QRect place;    // in its parent, in logical pixels
    QString text;
    QString toolTip;
    QString accessibleName;
    QString fontFamily;
    double fontFactor = 1.0;
    std::optional<Qt::Alignment> alignment;
    bool bold = false;
    bool hidden = false;
    bool disabled = false;

    // "Command1", or "Command1(3)" for an element of a control array.
    QString elementName() const;
};

// The parts of building that need no template.
void applyFacts(QObject& control, const RowFacts& facts);
void applyAlignment(QWidget& control, Qt::Alignment alignment);
void applyVisibility(QWidget& control, const RowFacts& facts);
void labelControl(Label& label, QWidget& labelled);
void nameControls(Form& form);
void setFocusOrder(const std::vector<QWidget*>& controls);

template <typename Window>
class WindowRow {
public:
    virtual ~WindowRow() = default;
    virtual void create(Window& window, std::vector<QWidget*>& focusOrder) const = 0;
    virtual void connect(Window& window) const = 0;
};

template <typename T>
concept SeenControl = std::derived_from<T, QWidget>;

// Whose members and handlers a class has: the class itself or one that it derives from.
template <typename Base, typename Derived>
concept BaseOf = std::derived_from<Derived, Base>;
template <typename Base, typename Derived>
concept OtherBaseOf = BaseOf<Base, Derived> && !std::same_as<Base, Derived>;

template <typename Window, typename T, bool Indexed>
class Row : public WindowRow<Window> {
public:
    using Store = std::function<void(Window&, T*)>;
    using Find = std::function<T*(Window&)>;

    Row(const char* name, int index, Store store, Find find)
        : m_store(std::move(store))
        , m_find(std::move(find)) {
        m_facts.name = name;
        m_facts.index = index;
    }

    // Left, top, width, height in the parent, in logical pixels.
    Row& at(int left, int top, int width, int height) {
        m_facts.place = QRect(left, top, width, height);
        return *this;
    }

    // The container that the control stands in, declared in a row above; the window when none is
    // told. A container with pages takes the page's index, an element of a control array its own
    // index first.
    template <BaseOf<Window> Base, SeenControl P>
    Row& in(P* Base::*parent) {
        m_parent = [parent](Window& window) -> QWidget* { return window.*parent; };
        return *this;
    }
    template <BaseOf<Window> Base, std::derived_from<Tabs> P>
    Row& in(P* Base::*tabs, int page) {
        m_parent = [tabs, page](Window& window) -> QWidget* { return &(window.*tabs)->page(page); };
        return *this;
    }
    template <BaseOf<Window> Base, SeenControl P>
    Row& in(ControlArray<P> Base::*parents, int index) {
        m_parent = [parents, index](Window& window) -> QWidget* { return &(window.*parents)(index); };
        return *this;
    }
    template <BaseOf<Window> Base, std::derived_from<Tabs> P>
    Row& in(ControlArray<P> Base::*tabs, int index, int page) {
        m_parent = [tabs, index, page](Window& window) -> QWidget* { return &(window.*tabs)(index).page(page); };
        return *this;
    }

    Row& text(const char* utf8Text) {
        m_facts.text = QString::fromUtf8(utf8Text);
        return *this;
    }
    Row& tip(const char* utf8Text) {
        m_facts.toolTip = QString::fromUtf8(utf8Text);
        return *this;
    }
    // What a screen reader says where the control's own text or label does not say it.
    Row& says(const char* utf8Text) {
        m_facts.accessibleName = QString::fromUtf8(utf8Text);
        return *this;
    }
    Row& hidden() {
        m_facts.hidden = true;
        return *this;
    }
    Row& disabled() {
        m_facts.disabled = true;
        return *this;
    }
    Row& bold() {
        m_facts.bold = true;
        return *this;
    }
    Row& font(const char* family) {
        m_facts.fontFamily = QString::fromLatin1(family);
        return *this;
    }
    // The font's size as a multiple of the window's.
    Row& size(double factor) {
        m_facts.fontFactor = factor;
        return *this;
    }
    Row& align(Qt::Alignment alignment) {
        m_facts.alignment = alignment;
        return *this;
    }

    // Makes a label name the control that stands beside it: its access letter leads there.
    template <BaseOf<Window> Base, SeenControl C>
    Row& labels(C* Base::*labelled) requires std::derived_from<T, Label> {
        m_labelled = [labelled](Window& window) -> QWidget* { return window.*labelled; };
        return *this;
    }
    template <BaseOf<Window> Base, SeenControl C>
    Row& labels(ControlArray<C> Base::*labelled, int index) requires std::derived_from<T, Label> {
        m_labelled = [labelled, index](Window& window) -> QWidget* { return &(window.*labelled)(index); };
        return *this;
    }

    Row& every(int milliseconds) requires std::same_as<T, Timer> {
        return set([milliseconds](T& timer) { timer.setInterval(milliseconds); });
    }
    Row& enabled() requires std::same_as<T, Timer> {
        return set([](T& timer) { timer.setEnabled(true); });
    }
    Row& multiLine() requires std::derived_from<T, TextBox> {
        return set([](T& box) { box.setMultiLine(); });
    }
    Row& readOnly() requires std::derived_from<T, TextBox> {
        return set([](T& box) { box.setReadOnly(true); });
    }
    Row& ticked() requires std::derived_from<T, CheckBox> || std::derived_from<T, OptionButton> {
        return set([](T& button) { button.setValue(true); });
    }
    Row& pages(const QStringList& captions) requires std::derived_from<T, Tabs> {
        return set([captions](T& tabs) { tabs.setPages(captions); });
    }
    // A picture's resource, such as ":/pictures/face.svg".
    Row& picture(const char* resource) requires std::derived_from<T, Picture> {
        return set([resource](T& picture) { picture.setSource(QString::fromLatin1(resource)); });
    }

    // Anything else that the class of the control has, run before its text is set and its handlers
    // are connected.
    Row& set(std::function<void(T&)> setting) {
        m_settings.push_back(std::move(setting));
        return *this;
    }

    // Runs the window's handler whenever the control raises the signal. The handler takes as many
    // of the signal's arguments as it likes; that of a control array takes the element's index
    // before them, or nothing at all.
    template <BaseOf<T> Raiser, typename... Raised, BaseOf<Window> Base, typename... Taken>
    Row& when(void (Raiser::*signal)(Raised...), void (Base::*handler)(Taken...)) {
        m_connections.push_back([signal, handler, index = m_facts.index](T& control, Window& window) {
            QObject::connect(&control, signal, &window, [&window, handler, index](Raised... raised) {
                if (!window.isUnloaded() && !isEndingByError())
                    run(window, handler, index, std::tuple<Raised...>(raised...));
            });
        });
        return *this;
    }
    template <typename Base, typename... Taken>
    Row& onClick(void (Base::*handler)(Taken...)) {
        return when(&T::Click, handler);
    }
    template <typename Base, typename... Taken>
    Row& onChange(void (Base::*handler)(Taken...)) {
        return when(&T::Change, handler);
    }
    template <typename Base, typename... Taken>
    Row& onTick(void (Base::*handler)(Taken...)) requires std::same_as<T, Timer> {
        return when(&T::Tick, handler);
    }

    void create(Window& window, std::vector<QWidget*>& focusOrder) const override {
        T* control = make(window);
        m_store(window, control);
        if constexpr (SeenControl<T>)
            window.addControl(*control, m_facts.place, m_facts.fontFactor);
        else
            window.addControl(*control, {});
        applyFacts(*control, m_facts);
        for (const auto& setting : m_settings)
            setting(*control);
        if constexpr (SeenControl<T>) {
            setText(*control);
            if (m_facts.alignment)
                applyAlignment(*control, *m_facts.alignment);
            applyVisibility(*control, m_facts);
            focusOrder.push_back(control);
        }
    }

    void connect(Window& window) const override {
        T& control = *m_find(window);
        if constexpr (std::derived_from<T, Label>) {
            if (m_labelled)
                labelControl(control, *m_labelled(window));
        }
        for (const auto& connection : m_connections)
            connection(control, window);
    }

private:
    T* make(Window& window) const {
        if constexpr (SeenControl<T>)
            return new T(m_parent ? m_parent(window) : static_cast<QWidget*>(&window));
        else
            return new T(&window);
    }

    void setText(T& control) const {
        if (m_facts.text.isEmpty())
            return;
        if constexpr (requires { control.setText(m_facts.text); })
            control.setText(m_facts.text);
        else if constexpr (requires { control.setTitle(m_facts.text); })
            control.setTitle(m_facts.text);
        else
            throw std::logic_error("a control without a text was given one");
    }

    template <typename Base, typename... Taken, typename... Raised>
    static void run(Window& window, void (Base::*handler)(Taken...), int index, const std::tuple<Raised...>& raised) {
        if constexpr (sizeof...(Taken) == 0) {
            (window.*handler)();
        } else if constexpr (Indexed) {
            static_assert(std::same_as<std::tuple_element_t<0, std::tuple<Taken...>>, int>,
                          "the handler of a control array takes the index first");
            runWith(window, handler, std::tuple_cat(std::make_tuple(index), raised),
                    std::make_index_sequence<sizeof...(Taken)>{});
        } else {
            runWith(window, handler, raised, std::make_index_sequence<sizeof...(Taken)>{});
        }
    }

    template <typename Handler, typename Arguments, size_t... Places>
    static void runWith(Window& window, Handler handler, const Arguments& arguments, std::index_sequence<Places...>) {
        (window.*handler)(std::get<Places>(arguments)...);
    }

    RowFacts m_facts;
    Store m_store;
    Find m_find;
    std::function<QWidget*(Window&)> m_parent;
    std::function<QWidget*(Window&)> m_labelled;
    std::vector<std::function<void(T&)>> m_settings;
    std::vector<std::function<void(T&, Window&)>> m_connections;
};

// A row for a single control. Where a window has the member from its base, its own class is told: control<EXDir>(...).
template <typename Window, typename T>
Row<Window, T, false> control(T* Window::*member, const char* name) {
    return {name, -1, [member](Window& window, T* made) { window.*member = made; },
            [member](Window& window) { return window.*member; }};
}

template <typename Window, OtherBaseOf<Window> Base, typename T>
Row<Window, T, false> control(T* Base::*member, const char* name) {
    return control(static_cast<T * Window::*>(member), name);
}

// A row for one element of a control array.
template <typename Window, typename T>
Row<Window, T, true> control(ControlArray<T> Window::*member, const char* name, int index) {
    return {name, index, [member, index](Window& window, T* made) { (window.*member).put(index, made); },
            [member, index](Window& window) { return &(window.*member)(index); }};
}

template <typename Window, OtherBaseOf<Window> Base, typename T>
Row<Window, T, true> control(ControlArray<T> Base::*member, const char* name, int index) {
    return control(static_cast<ControlArray<T> Window::*>(member), name, index);
}

} // namespace discaro::kit
