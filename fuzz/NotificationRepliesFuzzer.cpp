// The input: the name of a signal in the first byte, the type of what comes with it in the second, and its bytes.

#include "Fuzz.h"
#include "Platform/Gtk/NotificationReplies.h"

#include <array>
#include <memory>

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    using namespace tarn;
    using namespace tarn::gtk;
    static constexpr std::array names { "ActionInvoked", "NotificationClosed", "ActivationToken", "Other", "" };
    static constexpr std::array types { "(us)", "(uu)", "(as)", "(u)", "()", "(usa{sv})", "(ss)" };
    if (size < 2)
        return 0;
    std::string_view const name = names[data[0] % names.size()];
    std::string_view const type = types[data[1] % types.size()];
    auto* const bytes = g_bytes_new(data + 2, size - 2);
    std::unique_ptr<GVariant, decltype(&g_variant_unref)> const parameters(
        g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(type.data()), bytes, FALSE)), &g_variant_unref);
    g_bytes_unref(bytes);

    auto const signal = NotificationReplies::signal(name, parameters.get());
    bool const isUnderstood = (type == "(us)" && (name == "ActionInvoked" || name == "ActivationToken"))
        || (type == "(uu)" && name == "NotificationClosed");
    fuzz::require(std::holds_alternative<std::monostate>(signal) != isUnderstood, "only what was agreed is understood");
    if (auto const* const activation = std::get_if<NotificationReplies::ActivationToken>(&signal))
        fuzz::require(activation->token.find('\0') == std::string::npos, "a token is text");
    if (type == "(as)")
        NotificationReplies::capabilities(parameters.get());
    return 0;
}
