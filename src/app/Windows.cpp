#include "app/Windows.h"

#include "kit/program/Ground.h"
#include "kit/program/UnhandledErrors.h"

#include <QtCore/QPointer>

#include <map>
#include <utility>

namespace discaro::app::Windows {

namespace {

struct Registry {
    std::map<std::string, Factory, std::less<>> factories;
    std::map<std::string, QPointer<kit::Form>, std::less<>> forms;
    std::function<void()> whenNoneIsLeft;
};

Registry& registry() {
    static Registry instance;
    return instance;
}

// A handler may be between one window and the next: only the event loop can tell that none will
// come. The loop of a box that reports an error comes round too; the box itself ends the program.
void checkForEnd() {
    kit::atGround([] {
        const Registry& all = registry();
        if (all.forms.empty() && all.whenNoneIsLeft && !kit::isEndingByError())
            all.whenNoneIsLeft();
    });
}

void forget(const std::string& name) {
    registry().forms.erase(name);
    if (registry().forms.empty())
        checkForEnd();
}

kit::Form* make(std::string_view name) {
    const auto factory = registry().factories.find(name);
    if (factory == registry().factories.end())
        return nullptr;
    kit::Form* form = factory->second();
    registry().forms[factory->first] = form;
    QObject::connect(form, &kit::Form::Unloaded, form, [known = factory->first] { forget(known); });
    return form;
}

} // namespace

void Register(const std::string& name, Factory factory) {
    registry().factories[name] = std::move(factory);
}

void Clear() {
    const Registry all = std::exchange(registry(), {});
    for (const auto& [name, form] : all.forms) {
        if (form)
            form->hide(); // a window that shows may still be asked what it shows
        delete static_cast<QObject*>(form.data());
    }
    kit::runGroundActions();
}

bool Exists(std::string_view name) {
    return registry().factories.find(name) != registry().factories.end();
}

bool IsLoaded(std::string_view name) {
    return Find(name) != nullptr;
}

kit::Form* Load(std::string_view name) {
    kit::Form* form = Find(name);
    if (!form)
        form = make(name);
    if (form)
        form->Load();
    return Find(name);
}

void Show(std::string_view name, kit::Form::Modality modality) {
    if (kit::Form* form = Load(name))
        form->Show(modality);
}

void Unload(std::string_view name) {
    if (kit::Form* form = Find(name))
        form->Unload();
}

void Hide(std::string_view name) {
    if (kit::Form* form = Find(name))
        form->Hide();
}

kit::Form* Find(std::string_view name) {
    const auto place = registry().forms.find(name);
    return place == registry().forms.end() ? nullptr : place->second.data();
}

void setWhenNoneIsLeft(std::function<void()> action) {
    registry().whenNoneIsLeft = std::move(action);
}

} // namespace discaro::app::Windows
