#include "MigWizard/form/FormGrammar.h"

namespace mig {
namespace {

constexpr std::string_view kFormGrammar[] = {
    "<obj_header>-<keyword><*delim><obj_name><empty_delim>:<empty_delim><obj_type>",
    "<obj_name>-<name>",
    "<obj_type>-<name>",
    "<object>-<obj_header><*delim><properties>end<empty_delim>|<obj_header><*delim>end<empty_delim>",
    "<keyword>-object|inherited|inline",
    "<name>-<*char><char_or_digit_l>",
    "<char_or_digit_l>-<*chars_or_digits>|",
    "<properties>-<prop>|<nested_obj>|<prop><properties>|<nested_obj><properties>",
    "<nested_obj>-<object>",
    "<prop>-<full_prop_name><empty_delim>=<empty_delim><prop_value><*delim>",
    "<full_prop_name>-<prop_name>",
    "<prop_value>-<value>",
    "<prop_name>-<name>|<name>.<prop_name>",
    "<empty_delim>-<*delim>|",
    ("<value>-<numeric_date>|<number>|<const>|<string>|<string2>|<strings>|<numbers>|<set>|<collection>|"
     "<binary>|<name>.<name>"),
    "<sign>-+|-|",
    "<int>-<sign><*digits>",
    "<fixed_point>-<int>.<*digits>",
    "<float>-<fixed_point>e<int>|<int>e<int>",
    ("<number>-<sign><*digits>.<*digits>e<int>|<sign><*digits>e<int>|<sign><*digits>.<*digits>|"
     "<sign><*digits>"),
    "<numeric_date>-<*digits>d",
    "<symbols>-<*symbols>|",
    "<byte>-#<*digits>",
    "<bytes>-<byte>|<byte><bytes>",
    "<string>-'<symbols>'|<bytes>|<bytes><string>|'<symbols>'<string>",
    "<string2>-<string>|<empty_delim><string><empty_delim>+<empty_delim><string2>",
    "<const>-<name>",
    "<number_list>-<number>|<number><*delim><number_list>|",
    "<numbers>-(<empty_delim><number_list><empty_delim>)",
    "<string_list>-<string2>|<string2><*delim><string_list>|",
    "<strings>-(<empty_delim><string_list><empty_delim>)",
    "<set_items>-<name>|<name><empty_delim>,<empty_delim><set_items>",
    "<set>-[<empty_delim>]|[<empty_delim><set_items><empty_delim>]",
    "<item_prop>-<prop_name><empty_delim>=<empty_delim><value>",
    "<item_props>-<item_prop><*delim><item_props>|<item_prop><*delim>|<*delim>",
    "<col_item>-item<*delim><item_props>end",
    "<col_items>-<col_item><*delim><col_items>|<col_item>|",
    "<collection>-\\60<empty_delim><col_items><empty_delim>\\62",
    "<binary>-{<empty_delim><hex_list><empty_delim>}",
    "<hex_list>-<*hexs>|<*hexs><*delim><hex_list>|",
};
static_assert(std::size(kFormGrammar) == 40);

}  // namespace

std::span<const std::string_view> FormGrammar() {
  return kFormGrammar;
}

}  // namespace mig
