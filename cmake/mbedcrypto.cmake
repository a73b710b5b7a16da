# SPDX-License-Identifier: Apache-2.0
# The crypto library, which brings no package file of its own in every version.
find_path(MBEDTLS_INCLUDE_DIR mbedtls/sha256.h REQUIRED)
find_library(MBEDCRYPTO_LIBRARY mbedcrypto REQUIRED)
add_library(mbedcrypto UNKNOWN IMPORTED)
set_target_properties(mbedcrypto PROPERTIES
  IMPORTED_LOCATION ${MBEDCRYPTO_LIBRARY} INTERFACE_INCLUDE_DIRECTORIES ${MBEDTLS_INCLUDE_DIR})
