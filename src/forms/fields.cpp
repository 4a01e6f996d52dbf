#include "forms/fields.h"

#include <algorithm>
#include <charconv>

#include "model/field_text.h"
#include "model/frequency_text.h"
#include "text/gbk.h"

namespace korvane {
namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(' '), last = text.find_last_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, last - first + 1);
}

class TextField : public ShownField<std::string, std::string> {
  public:
    TextField(int control, std::string& gbk, std::string_view name, std::size_t limit)
        : ShownField(control, gbk), name_(name), limit_(limit) {}

  private:
    void put(FieldControls& controls, const std::string& gbk) override {
        controls.setText(control(), gbkToUtf8(gbk));
    }
    std::string current(const FieldControls& controls) const override {
        return controls.text(control());
    }
    std::string entered(const std::string& text, std::string& gbk) const override {
        const GbkText converted = toGbk(text);
        if (!converted.missing.empty())
            return std::string(name_) + "中的字符“" + converted.missing + "”不能用GBK编码表示";
        if (converted.bytes.size() > limit_)
            return std::string(name_) + "超过" + std::to_string(limit_) +
                   "个字节（一个汉字占两个字节）";
        gbk = converted.bytes;
        return {};
    }

    std::string_view name_;
    std::size_t limit_;
};

class AddressField : public ShownField<Ipv4, Ipv4> {
  public:
    using ShownField::ShownField;

  private:
    void put(FieldControls& controls, const Ipv4& value) override {
        controls.setAddress(control(), value);
    }
    Ipv4 current(const FieldControls& controls) const override {
        return controls.address(control()).value_or(Ipv4{});
    }
    std::string entered(const Ipv4& address, Ipv4& value) const override {
        value = address;
        return {};
    }
};

class AddressTextField : public ShownField<AddressText, std::optional<Ipv4>> {
  public:
    using ShownField::ShownField;

  private:
    void put(FieldControls& controls, const AddressText& value) override {
        controls.setAddress(control(), parseAddress(fieldText(value)));
    }
    std::optional<Ipv4> current(const FieldControls& controls) const override {
        return controls.address(control());
    }
    std::string entered(const std::optional<Ipv4>& address, AddressText& value) const override {
        enterText(addressText(address.value_or(Ipv4{})), value);
        return {};
    }
};

}  // namespace

std::optional<std::int64_t> parseNumber(std::string_view text) {
    const std::string_view digits = trimmed(text);
    const char* const end = digits.data() + digits.size();
    std::int64_t value = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, value);
    if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc::result_out_of_range)
        return digits.front() == '-' ? INT64_MIN : INT64_MAX;
    return value;
}

std::string numberRefusal(std::string_view text, std::uint32_t least, std::uint32_t most) {
    if (!parseNumber(text)) return "请输入一个整数。";
    return "请输入 " + std::to_string(least) + " 和 " + std::to_string(most) + " 之间的整数。";
}

void Fields::megahertz(int control, std::uint32_t& value) {
    constexpr std::uint32_t most = std::numeric_limits<std::uint32_t>::max() / unitsPerMegahertz;
    fields_.push_back(
        std::make_unique<NumberField<std::uint32_t>>(control, value, 0, most, unitsPerMegahertz));
}

void Fields::kilobits(int control, std::uint32_t& bitsPerSecond) {
    constexpr std::uint32_t unit = 1000, most = std::numeric_limits<std::uint32_t>::max() / unit;
    fields_.push_back(
        std::make_unique<NumberField<std::uint32_t>>(control, bitsPerSecond, 0, most, unit));
}

void Fields::text(int control, std::string& gbk, std::string_view name, std::size_t limit) {
    fields_.push_back(std::make_unique<TextField>(control, gbk, name, limit));
}

void Fields::address(int control, Ipv4& value) {
    fields_.push_back(std::make_unique<AddressField>(control, value));
}

void Fields::address(int control, AddressText& text) {
    fields_.push_back(std::make_unique<AddressTextField>(control, text));
}

void Fields::selection(int control, int& index) {
    using SelectionField = ReadField<int, &FieldControls::selected>;
    fields_.push_back(std::make_unique<SelectionField>(control, index));
}

void Fields::checkedRows(int control, std::vector<int>& rows) {
    using RowsField = ReadField<std::vector<int>, &FieldControls::checkedRows>;
    fields_.push_back(std::make_unique<RowsField>(control, rows));
}

void Fields::show(FieldControls& controls) {
    for (const auto& field : fields_) field->show(controls);
}

bool Fields::changed(const FieldControls& controls) const {
    return std::ranges::any_of(fields_,
                               [&](const auto& field) { return field->changed(controls); });
}

std::optional<RefusedEntry> Fields::read(const FieldControls& controls) {
    for (const auto& field : fields_)
        if (std::string message = field->parse(controls); !message.empty())
            return RefusedEntry{field->control(), std::move(message)};
    for (const auto& field : fields_) field->take();
    return std::nullopt;
}

void Fields::readValid(const FieldControls& controls) {
    for (const auto& field : fields_)
        if (field->parse(controls).empty()) field->take();
}

void Fields::clicked(FieldControls& controls, int control) const {
    for (const auto& field : fields_)
        if (field->control() == control) field->clicked(controls);
}

}  // namespace korvane
