# Writes the public key KEY, and whether it is a VENDOR's (true or false), into the source file OUT.
file(READ "${KEY}" pem)
if(NOT pem MATCHES "^-----BEGIN PUBLIC KEY-----\n[A-Za-z0-9+/=\n]+-----END PUBLIC KEY-----\n$")
    message(FATAL_ERROR "${KEY} is no public key in PEM form")
endif()
file(WRITE "${OUT}" "// Written by the build from ${KEY}.
#include \"licence/Registration.h\"

QByteArray builtInLicenceKey()
{
    return R\"(${pem})\";
}

bool isVendorLicenceKey()
{
    return ${VENDOR};
}
")
