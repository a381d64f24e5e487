unit b;
end.
