# The public headers' plain comments as Doxygen takes them.
s|@|\\@|g
s|^/\* -* \(.*\) -* \*/$||
s|^\( *\)/\* |\1/** |
s|^\( *\)// |\1/// |
s|^\( *\)//$|\1///|
s|;\( *\)/\* |;\1/**< |
# Specialisations of the standard library's templates, whose scope it has not read.
s|^template <>$||
s|^struct std::.*;$||
