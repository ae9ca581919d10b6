#pragma once

#include "kit/form/Form.h"

#include <functional>
#include <string>
#include <string_view>

// The registry of windows. Windows know each other by name only and reach each other through it.
// There is one instance of each window: it is made when it is first needed and leaves the registry
// when it is unloaded, so that the next use of its name makes a new one.
namespace discaro::app::Windows {

using Factory = std::function<kit::Form*()>;

// Makes a window known. Only the file that wires the program together does this.
void Register(const std::string& name, Factory factory);
// Forgets all factories and unloads nothing; windows still up are destroyed. For the end of a test.
void Clear();

// Whether a window of that name is known.
bool Exists(std::string_view name);
bool IsLoaded(std::string_view name);

// Makes the window if it is not there yet and runs its load handler. Null when the name is not
// known, or when the window unloaded itself while loading.
kit::Form* Load(std::string_view name);
// Loads and shows. A modal show returns when the window is gone or hidden. An unknown name shows
// nothing.
void Show(std::string_view name, kit::Form::Modality modality = kit::Form::Modality::Modeless);
// Unloads or hides the window if it is loaded.
void Unload(std::string_view name);
void Hide(std::string_view name);

// The window if it is loaded (or loading, or unloading), else null.
kit::Form* Find(std::string_view name);

// Called when the last loaded window has gone and the event loop comes round with none in its
// place: nothing could bring one back then. The program gives its end here.
void setWhenNoneIsLeft(std::function<void()> action);

} // namespace discaro::app::Windows
