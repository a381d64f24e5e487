object F: TF
  object Q: TQuery
  end
end
