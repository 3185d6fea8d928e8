#include "Platform/Gtk/NavigationTranslation.h"

#include <gdk/gdk.h>

namespace tarn::gtk {

platform::NavigationAction translate(WebKitNavigationAction* action)
{
    platform::NavigationAction result;
    if (auto const* const uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)))
        result.url = uri;
    if (webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED)
        result.type = platform::NavigationType::linkActivated;
    result.commandKey = (webkit_navigation_action_get_modifiers(action) & GDK_CONTROL_MASK) != 0;
    result.userGesture = webkit_navigation_action_is_user_gesture(action);
    switch (webkit_navigation_action_get_mouse_button(action)) {
    case GDK_BUTTON_PRIMARY:
        result.button = platform::MouseButton::primary;
        break;
    case GDK_BUTTON_MIDDLE:
        result.button = platform::MouseButton::middle;
        break;
    case GDK_BUTTON_SECONDARY:
        result.button = platform::MouseButton::secondary;
        break;
    default:
        break;
    }
    return result;
}

platform::NavigationResponse translate(WebKitResponsePolicyDecision* decision)
{
    auto* const response = webkit_response_policy_decision_get_response(decision);
    platform::NavigationResponse result {
        .url = webkit_uri_response_get_uri(response),
        .canShowMimeType = static_cast<bool>(webkit_response_policy_decision_is_mime_type_supported(decision)),
    };
    auto* const headers = webkit_uri_response_get_http_headers(response);
    if (auto const* const disposition
        = headers ? soup_message_headers_get_one(headers, "Content-Disposition") : nullptr)
        result.contentDisposition = disposition;
    return result;
}

platform::LoadFailure::Kind kindOf(GError const* error)
{
    using Kind = platform::LoadFailure::Kind;
    if (error->domain == G_RESOLVER_ERROR)
        return Kind::nameNotFound;
    // A connection that breaks while it is made says nothing of the server.
    if (g_error_matches(error, G_TLS_ERROR, G_TLS_ERROR_EOF) || g_error_matches(error, G_TLS_ERROR, G_TLS_ERROR_MISC))
        return Kind::cannotConnect;
    if (error->domain == G_TLS_ERROR)
        return Kind::notSecure;
    if (g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT))
        return Kind::timedOut;
    for (int const code : { G_IO_ERROR_CONNECTION_REFUSED, G_IO_ERROR_HOST_UNREACHABLE, G_IO_ERROR_NETWORK_UNREACHABLE,
             G_IO_ERROR_HOST_NOT_FOUND, G_IO_ERROR_CONNECTION_CLOSED, G_IO_ERROR_PROXY_FAILED }) {
        if (g_error_matches(error, G_IO_ERROR, code))
            return Kind::cannotConnect;
    }
    return Kind::other;
}

void carryOut(platform::NavigationPolicy policy, WebKitPolicyDecision* decision)
{
    switch (policy) {
    case platform::NavigationPolicy::cancel:
        webkit_policy_decision_ignore(decision);
        break;
    case platform::NavigationPolicy::allow:
        webkit_policy_decision_use(decision);
        break;
    case platform::NavigationPolicy::download:
        webkit_policy_decision_download(decision);
        break;
    }
}

}
