// Included by sources of musl, which need nothing of it.
