modern modern.fnt
slant slant.fnt
