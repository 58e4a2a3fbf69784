// Carrier of the precompiled headers.
