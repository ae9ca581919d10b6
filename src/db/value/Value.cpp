#include "db/value/Value.h"

#include "base/Number.h"

namespace discaro::db {

namespace {

struct TextOf {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(int64_t value) const { return base::numberText(value); }
    std::string operator()(double value) const { return base::numberText(value); }
    std::string operator()(const std::string& value) const { return value; }
};

struct NumberOf {
    double operator()(std::monostate) const { return 0; }
    double operator()(bool value) const { return value ? 1 : 0; }
    double operator()(int64_t value) const { return static_cast<double>(value); }
    double operator()(double value) const { return value; }
    double operator()(const std::string& value) const { return base::leadingNumber(value); }
};

} // namespace

bool isNull(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

std::string textOf(const Value& value) {
    return std::visit(TextOf{}, value);
}

double numberOf(const Value& value) {
    return std::visit(NumberOf{}, value);
}

} // namespace discaro::db
