#pragma once

/// Asio, as all programs of this repository use it.
#ifndef ASIO_STANDALONE
#define ASIO_STANDALONE
#endif
#ifndef ASIO_NO_DEPRECATED
#define ASIO_NO_DEPRECATED
#endif
#include <asio.hpp>
