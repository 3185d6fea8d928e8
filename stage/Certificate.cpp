#include "Certificate.h"

#include <gnutls/x509.h>

#include <ctime>
#include <memory>
#include <stdexcept>
#include <string>

namespace tarn::stage {

namespace {

struct Deinit {
    void operator()(gnutls_x509_privkey_t key) const { gnutls_x509_privkey_deinit(key); }
    void operator()(gnutls_x509_crt_t certificate) const { gnutls_x509_crt_deinit(certificate); }
};

void check(int result)
{
    if (result < 0)
        throw std::runtime_error(std::string("no certificate: ") + gnutls_strerror(result));
}

std::string taken(gnutls_datum_t const& datum)
{
    std::string text(reinterpret_cast<char const*>(datum.data), datum.size);
    gnutls_free(datum.data);
    return text;
}

}

Ref<GTlsCertificate> makeCertificate()
{
    gnutls_x509_privkey_t rawKey = nullptr;
    check(gnutls_x509_privkey_init(&rawKey));
    std::unique_ptr<gnutls_x509_privkey_int, Deinit> const key(rawKey);
    check(
        gnutls_x509_privkey_generate(key.get(), GNUTLS_PK_ECDSA, GNUTLS_CURVE_TO_BITS(GNUTLS_ECC_CURVE_SECP256R1), 0));

    gnutls_x509_crt_t rawCertificate = nullptr;
    check(gnutls_x509_crt_init(&rawCertificate));
    std::unique_ptr<gnutls_x509_crt_int, Deinit> const certificate(rawCertificate);
    constexpr std::time_t day = 24 * 60 * 60;
    auto const now = std::time(nullptr);
    unsigned char const serial[] { 1 };
    check(gnutls_x509_crt_set_version(certificate.get(), 3));
    check(gnutls_x509_crt_set_serial(certificate.get(), serial, sizeof serial));
    check(gnutls_x509_crt_set_activation_time(certificate.get(), now - day));
    check(gnutls_x509_crt_set_expiration_time(certificate.get(), now + 30 * day));
    check(gnutls_x509_crt_set_dn(certificate.get(), "CN=Stand-in services", nullptr));
    check(gnutls_x509_crt_set_key(certificate.get(), key.get()));
    check(gnutls_x509_crt_sign2(certificate.get(), certificate.get(), key.get(), GNUTLS_DIG_SHA256, 0));

    gnutls_datum_t datum {};
    check(gnutls_x509_crt_export2(certificate.get(), GNUTLS_X509_FMT_PEM, &datum));
    auto pem = taken(datum);
    check(gnutls_x509_privkey_export2(key.get(), GNUTLS_X509_FMT_PEM, &datum));
    pem += taken(datum);

    GError* error = nullptr;
    auto* result = g_tls_certificate_new_from_pem(pem.data(), static_cast<gssize>(pem.size()), &error);
    if (!result) {
        std::string const message = error->message;
        g_error_free(error);
        throw std::runtime_error("no certificate: " + message);
    }
    return Ref<GTlsCertificate>::adopt(result);
}

}
