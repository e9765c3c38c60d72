# What Doxygen asks of the pages: filters each of them as it is read.
/^ *```/,/^ *```/b

# A link stands in one line.
/\[[^]]*$/{N; s/\n */ /}

# Links to what is no page of the reference lead to the copies that stand beside its pages.
s!\]\((\.\./)?examples/([^)/]*/)*([^)]*)\)!](\3)!g
s!([^!])(\[[^]]*\])\(docs/pictures/([^)]*)\)!\1\2(\3)!g

# A chapter that others lead to has a name.
/^## (Adding |(On the command line|In a program|In Python|In GStreamer pipelines)$)/{h; s/^## //; s/ /-/g; s/.*/ {#\L&}/; x; G; s/\n//}
