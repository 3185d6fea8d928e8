#include "Platform/Gtk/LaunchMessage.h"

namespace tarn::gtk::LaunchMessage {

Glib::VariantType const& type()
{
    static Glib::VariantType const theType("(bbayayaay)");
    return theType;
}

Glib::VariantBase pack(LaunchRequest const& request)
{
    GVariantBuilder builder;
    g_variant_builder_init(&builder, type().gobj());
    g_variant_builder_add(&builder, "b", request.window == LaunchRequest::Window::show);
    g_variant_builder_add(&builder, "b", request.rendering == Rendering::safe);
    g_variant_builder_add(&builder, "^ay", request.profile.c_str());
    g_variant_builder_add(&builder, "^ay", request.newItem.c_str());
    g_variant_builder_open(&builder, G_VARIANT_TYPE("aay"));
    for (auto const& url : request.urls)
        g_variant_builder_add(&builder, "^ay", url.c_str());
    g_variant_builder_close(&builder);
    return Glib::wrap(g_variant_ref_sink(g_variant_builder_end(&builder)));
}

LaunchRequest unpack(Glib::VariantBase message)
{
    gboolean show = FALSE;
    gboolean safe = FALSE;
    g_autofree char* profile = nullptr;
    g_autofree char* item = nullptr;
    g_auto(GStrv) urls = nullptr;
    g_variant_get(message.gobj(), "(bb^ay^ay^aay)", &show, &safe, &profile, &item, &urls);
    LaunchRequest request {
        .window = show ? LaunchRequest::Window::show : LaunchRequest::Window::leaveHidden,
        .rendering = safe ? Rendering::safe : Rendering::detected,
        .profile = profile,
        .newItem = item,
    };
    for (auto* url = urls; *url; ++url)
        request.urls.emplace_back(*url);
    return request;
}

}
