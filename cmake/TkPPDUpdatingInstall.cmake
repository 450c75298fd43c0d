# Filled by the packaging step: what is installed and how other projects find it.
