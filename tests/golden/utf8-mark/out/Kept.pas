unit Kept;
{ nothing to change: the mark stays }
end.
